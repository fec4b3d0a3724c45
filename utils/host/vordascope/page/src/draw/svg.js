// Writes as SVG what is drawn on it: the part of a canvas's context that the page's drawings use.

const escaped = (text) =>
    String(text).replace(
        /[&<>"]/g,
        (c) => ({ '&': '&amp;', '<': '&lt;', '>': '&gt;', '"': '&quot;' })[c],
    );
const round = (x) => Math.round(x * 100) / 100;
const ANCHORS = { left: 'start', center: 'middle', right: 'end' };
const BASELINES = { top: 'text-before-edge', middle: 'central', bottom: 'text-after-edge' };

/** A colour in the words that every reader of SVG knows, and how opaque it is. */
function inked(colour) {
    const [, hex, alpha] = /^(#[0-9a-f]{6})([0-9a-f]{2})$/i.exec(colour) ?? [];
    const whole = hex ?? colour.replace(/^rgba?\((\d+),? (\d+),? (\d+).*/, 'rgb($1,$2,$3)');
    return [whole, alpha ? Number.parseInt(alpha, 16) / 255 : 1];
}

export class Svg {
    #out = [];
    #path = '';
    #stack = [];
    #count = 0;
    #state = { x: 0, y: 0, dash: [], clip: '' };

    constructor() {
        Object.assign(this, { fillStyle: '#000', strokeStyle: '#000', lineWidth: 1, font: '' });
        Object.assign(this, { textAlign: 'left', textBaseline: 'top', globalAlpha: 1 });
    }

    #tag(name, attributes, content = '') {
        const all = { ...attributes, ...(this.#state.clip && { 'clip-path': this.#state.clip }) };
        const text = Object.entries(all).map(([key, value]) => ` ${key}="${escaped(value)}"`);
        this.#out.push(
            `<${name}${text.join('')}${content ? `>${escaped(content)}</${name}>` : '/>'}`,
        );
    }

    /** What a `fill` or a `stroke` looks like. */
    #ink(kind, style) {
        if (style.id) return { [kind]: `url(#${style.id})` };
        const [colour, alpha] = inked(style);
        const opacity = alpha * this.globalAlpha;
        return { [kind]: colour, ...(opacity < 1 && { [`${kind}-opacity`]: round(opacity) }) };
    }

    #at = (x, y) => `${round(x + this.#state.x)} ${round(y + this.#state.y)}`;

    save() {
        const { fillStyle, strokeStyle, lineWidth, font, textAlign, textBaseline, globalAlpha } =
            this;
        const own = {
            fillStyle,
            strokeStyle,
            lineWidth,
            font,
            textAlign,
            textBaseline,
            globalAlpha,
        };
        this.#stack.push([own, { ...this.#state }]);
    }
    restore() {
        const [own, state] = this.#stack.pop();
        Object.assign(this, own);
        this.#state = state;
    }
    translate(x, y) {
        this.#state.x += x;
        this.#state.y += y;
    }
    setLineDash(dash) {
        this.#state.dash = dash;
    }
    beginPath() {
        this.#path = '';
    }
    moveTo(x, y) {
        this.#path += `M${this.#at(x, y)}`;
    }
    lineTo(x, y) {
        this.#path += `${this.#path ? 'L' : 'M'}${this.#at(x, y)}`;
    }
    closePath() {
        this.#path += 'Z';
    }
    rect(x, y, width, height) {
        this.#path += `M${this.#at(x, y)}h${round(width)}v${round(height)}h${round(-width)}Z`;
    }
    /** A whole circle. */
    arc(x, y, radius) {
        const half = (side) => `a${radius} ${radius} 0 1 0 ${side * 2 * radius} 0`;
        this.#path += `M${this.#at(x - radius, y)}${half(1)}${half(-1)}`;
    }
    clip() {
        const id = `c${++this.#count}`;
        this.#out.push(`<clipPath id="${id}"><path d="${this.#path}"/></clipPath>`);
        this.#state.clip = `url(#${id})`;
    }
    stroke() {
        const { dash } = this.#state;
        const dashes = dash.length && { 'stroke-dasharray': dash.map(round).join(' ') };
        const ink = this.#ink('stroke', this.strokeStyle);
        this.#tag('path', {
            d: this.#path,
            fill: 'none',
            ...ink,
            'stroke-width': this.lineWidth,
            ...dashes,
        });
    }
    fill() {
        this.#tag('path', { d: this.#path, ...this.#ink('fill', this.fillStyle) });
    }
    fillRect(x, y, width, height) {
        const [left, top] = this.#at(x, y).split(' ');
        const size = {
            width: round(width),
            height: round(height),
            'shape-rendering': 'crispEdges',
        };
        this.#tag('rect', { x: left, y: top, ...size, ...this.#ink('fill', this.fillStyle) });
    }
    strokeRect(...box) {
        this.beginPath();
        this.rect(...box);
        this.stroke();
    }
    fillText(text, x, y) {
        const [left, top] = this.#at(x, y).split(' ');
        const place = {
            'text-anchor': ANCHORS[this.textAlign],
            'dominant-baseline': BASELINES[this.textBaseline],
        };
        const ink = this.#ink('fill', this.fillStyle);
        const [, weight = 400, size, family] = /(?:(\d+) )?([\d.]+)px (.*)$/.exec(this.font);
        const font = { 'font-family': family, 'font-size': size, 'font-weight': weight };
        this.#tag('text', { x: left, y: top, ...place, ...ink, ...font }, text);
    }
    /** From left to right. */
    createLinearGradient() {
        const id = `g${++this.#count}`;
        const stops = [];
        this.#out.push(stops);
        const addColorStop = (offset, colour) =>
            stops.push(`<stop offset="${offset}" stop-color="${inked(colour)[0]}"/>`);
        stops.toString = () => `<linearGradient id="${id}">${stops.join('')}</linearGradient>`;
        return { id, addColorStop };
    }

    /** All of it, as a file. */
    text(width, height) {
        const head = `<svg xmlns="http://www.w3.org/2000/svg" width="${round(width)}" height="${round(height)}">`;
        return `${head}\n${this.#out.map(String).join('\n')}\n</svg>\n`;
    }
}
