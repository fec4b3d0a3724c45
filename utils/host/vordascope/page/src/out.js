// A card as a file: its picture as it stands on the page, its numbers for a spreadsheet.
import { colourOf, el } from './dom.js';
import { Svg } from './draw/svg.js';
import { flat, number, printed } from './model.js';
import { shownIn } from './sources.js';

/** Pixels of a picture for one of the page. */
const SHARP = 2;

/** What is left out of a picture. */
const CONTROLS = 'button, select, input, .u-cursor-x, .u-cursor-y, .u-cursor-pt, .patch';

/** Offers what a person chose as a file of that name. */
export function save(name, blob) {
    const link = el('a', { href: URL.createObjectURL(blob) });
    link.download = name;
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 1000);
}

/** A text that breaks into lines, as [words, box] of each of them. */
function linesOf(node) {
    const range = document.createRange();
    const lines = [];
    for (const { 0: word, index } of node.data.matchAll(/\S+/g)) {
        range.setStart(node, index);
        range.setEnd(node, index + word.length);
        const box = range.getBoundingClientRect();
        const last = lines.at(-1);
        if (last && Math.abs(last[1].top - box.top) < 1) last[0] += ` ${word}`;
        else lines.push([word, box]);
    }
    return lines;
}

/** Paints the words of a text where its frame shows them. */
function paintText(context, node) {
    const parent = node.parentElement;
    const style = getComputedStyle(parent);
    const frame = parent.closest('.wide, .measured, .legend, .card').getBoundingClientRect();
    context.font = `${style.fontStyle} ${style.fontWeight} ${style.fontSize} ${style.fontFamily}`;
    context.fillStyle = style.color;
    context.textAlign = 'left';
    context.textBaseline = 'middle';
    for (const [text, { left, top, bottom, width }] of linesOf(node)) {
        const middle = (top + bottom) / 2;
        const within = left < frame.right && middle > frame.top && middle < frame.bottom;
        if (width > 0 && within) context.fillText(text, left, middle);
    }
}

/** Paints an element's ground, its edge on the left, and what it draws itself. */
function paintElement(context, element) {
    const { left, top, width, height } = element.getBoundingClientRect();
    const { backgroundColor, borderLeftColor } = getComputedStyle(element);
    context.fillStyle = backgroundColor;
    if (!/, 0\)$|^transparent$/.test(backgroundColor)) context.fillRect(left, top, width, height);
    if (element.matches('.marker')) {
        context.fillStyle = borderLeftColor;
        context.fillRect(left, top, 1.5, height);
    }
    if (!element.paint || width === 0) return;
    context.save();
    context.translate(left, top);
    element.paint(context, width, height);
    context.restore();
}

/** Paints a card as it stands on the page. */
function paintCard(context, card) {
    const { left, top, width, height } = card.getBoundingClientRect();
    context.translate(-left, -top);
    context.fillStyle = colourOf('--card');
    context.fillRect(left, top, width, height);
    const kept = (node) =>
        node.nodeType === Node.TEXT_NODE || (!node.matches(CONTROLS) && node.checkVisibility())
            ? NodeFilter.FILTER_ACCEPT
            : NodeFilter.FILTER_REJECT;
    const what = NodeFilter.SHOW_ELEMENT | NodeFilter.SHOW_TEXT;
    const walker = document.createTreeWalker(card, what, kept);
    while (walker.nextNode()) {
        const node = walker.currentNode;
        if (node.nodeType === Node.TEXT_NODE) paintText(context, node);
        else paintElement(context, node);
    }
}

function svgOf(card) {
    const context = new Svg();
    paintCard(context, card);
    return new Blob([context.text(card.offsetWidth, card.offsetHeight)], { type: 'image/svg+xml' });
}

function pngOf(card) {
    const size = [card.offsetWidth, card.offsetHeight].map((length) => length * SHARP);
    const canvas = new OffscreenCanvas(...size);
    const context = canvas.getContext('2d');
    context.scale(SHARP, SHARP);
    paintCard(context, card);
    return canvas.convertToBlob();
}

/** A cell that no spreadsheet takes for a formula or for two. */
function cellText(value) {
    const text = String(value ?? '').replace(/\s/g, ' ');
    return /^[=+\-@]/.test(text) && Number.isNaN(number(text)) ? `'${text}` : text;
}

/** Rows of cells as a spreadsheet takes them. */
const tsv = (rows) => rows.map((row) => `${row.map(cellText).join('\t')}\n`).join('');

/** Columns of any lengths, [title, ...cells] each, as rows. */
export const inRows = (columns) =>
    Array.from({ length: Math.max(...columns.map((column) => column.length)) }, (_, i) =>
        columns.map((column) => column[i] ?? ''),
    );

/** The values of fields that a view shows: lists side by side, then each grid. */
export function numbersOf(fields, view) {
    const sides = shownIn(view).map((moment) => [
        moment,
        view.before ? ['B ', 'A '][+(moment === view.before)] : '',
    ]);
    const values = [...new Set(fields)].flatMap((field) =>
        sides.map(([moment, side]) => [`${side}${field.name}`, moment.of(field), field.shape]),
    );
    const lists = values.filter(([, , shape]) => shape !== 'grid');
    const count = Math.max(0, ...lists.map(([, value]) => flat(value).length));
    const columns = [
        ['#', ...Array(count).keys()],
        ...lists.map(([name, value]) => [name, ...flat(value).map(printed)]),
    ];
    const grids = values.filter(([, value, shape]) => shape === 'grid' && value);
    return [
        ...(lists.length ? inRows(columns) : []),
        ...grids.flatMap(([name, rows]) => [[name], ...rows.map((row) => flat(row))]),
    ];
}

/** More rows than these are for a file. */
const ROWS = 1000;

/** Shows the numbers of a drawing as a table, for who cannot see it. */
function showTable(title, rows) {
    const line = (row) =>
        el(
            'tr',
            {},
            row.map((cell, i) => el(i ? 'td' : 'th', {}, String(cell))),
        );
    const rest = rows.length - ROWS;
    const dialog = el(
        'dialog',
        { class: 'help', 'aria-label': `numbers of ${title}` },
        el('form', { method: 'dialog' }, el('button', {}, 'Close')),
        el('table', { class: 'numbers' }, rows.slice(0, ROWS).map(line)),
        rest > 0 ? el('p', {}, `${rest} more rows; saved as TSV all are there.`) : null,
    );
    dialog.addEventListener('close', () => dialog.remove());
    document.body.append(dialog);
    dialog.showModal();
}

/**
 * What takes a card out of the page.
 * @param {string} title of the card, and of its files
 * @param {{element: Element}} card
 * @param {() => Array[]} rows its numbers, when they are asked for
 */
export function saver(title, card, rows) {
    const named = (end) => `${title.replace(/[^\p{L}\p{N}]+/gu, '-').toLowerCase()}.${end}`;
    const numbers = () => tsv(rows());
    const ways = {
        'Save…': () => {},
        'Show the numbers': () => showTable(title, rows()),
        PNG: async () => save(named('png'), await pngOf(card.element)),
        SVG: () => save(named('svg'), svgOf(card.element)),
        TSV: () => save(named('tsv'), new Blob([numbers()], { type: 'text/tab-separated-values' })),
        'Copy the numbers': () => navigator.clipboard.writeText(numbers()),
    };
    const choice = el(
        'select',
        { class: 'save', title: `save ${title}`, 'aria-label': `save ${title}` },
        Object.keys(ways).map((way) => el('option', {}, way)),
    );
    choice.addEventListener('change', () => {
        const way = choice.value;
        choice.selectedIndex = 0;
        ways[way]();
    });
    return choice;
}
