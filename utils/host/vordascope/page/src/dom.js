// Builds elements. Text becomes text nodes and nothing else: whatever a capture holds, it is never
// markup.
import { hold } from './lifetime.js';

function setAll(element, props) {
    for (const [name, value] of Object.entries(props)) {
        if (value === undefined || value === null || value === false) continue;
        if (name === 'on') {
            for (const [event, listener] of Object.entries(value))
                element.addEventListener(event, listener);
        } else if (name === 'data') {
            Object.assign(element.dataset, value);
        } else if (name in element && typeof value !== 'string') {
            element[name] = value;
        } else {
            element.setAttribute(name, value);
        }
    }
}

/**
 * An element of the page.
 * @param {string} tag its name
 * @param {object} props attributes; `on` holds listeners by event, `data` the data attributes; what
 *     is undefined, null or false is left out
 * @param {...(Node|string|number|null)} children nodes and texts; null is left out
 */
export function el(tag, props = {}, ...children) {
    const element = document.createElement(tag);
    setAll(element, props);
    element.append(...children.flat().filter((child) => child !== null && child !== undefined));
    return element;
}

/** The same for the elements of a drawing in SVG. */
export function svg(tag, props = {}, ...children) {
    const element = document.createElementNS('http://www.w3.org/2000/svg', tag);
    for (const [name, value] of Object.entries(props)) element.setAttribute(name, value);
    element.append(...children);
    return element;
}

/** A copy of the element in a template of index.html. */
export const template = (id) =>
    document.getElementById(id).content.firstElementChild.cloneNode(true);

/** Writes a text only where it is another one, so that a step through a series touches little. */
export function setText(element, text) {
    if (element.textContent !== text) element.textContent = text;
}

/**
 * Calls a listener with the entries of a ResizeObserver, in the frame after: what it lays out anew
 * is no business of the observer's round. It ends with the view.
 */
export function sizeObserver(listener) {
    const observer = new ResizeObserver((entries) =>
        requestAnimationFrame(() => listener(entries)),
    );
    hold(() => observer.disconnect());
    return observer;
}

const colours = new Map();

/** The value of one of the style's colours in the theme that shows now. */
export function colourOf(name) {
    if (!colours.has(name)) {
        const style = getComputedStyle(document.documentElement);
        colours.set(name, style.getPropertyValue(name).trim());
    }
    return colours.get(name);
}

/** To be called when another theme shows. */
export const forgetColours = () => colours.clear();
