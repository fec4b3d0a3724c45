// A canvas that fills the width of its card, sharp on every screen.
import { el } from './dom.js';

/**
 * @param {(context: CanvasRenderingContext2D, width: number, height: number) => void} paint draws
 *     everything, in units of the page
 * @param {object} options `ratio`, the height for a width, or `height` itself; `label`, what it
 *     shows, for those who cannot see it; `className`
 * @returns {{element: HTMLCanvasElement, repaint: () => void}}
 */
export function canvas(paint, { ratio, height, label, className = '' }) {
    const element = el('canvas', { role: 'img', 'aria-label': label, class: className });
    element.style.width = '100%';
    if (height) element.style.height = `${height}px`;
    else element.style.aspectRatio = String(1 / ratio);

    // The size is read when it changes, not for each repaint, which would lay out the page anew.
    let size = null;
    function measure() {
        size = [element.clientWidth, element.clientHeight];
    }
    function repaint() {
        if (!size) measure();
        const [width, tall] = size;
        if (width === 0 || tall === 0) {
            size = null;
            return;
        }
        const scale = window.devicePixelRatio || 1;
        const pixels = [Math.round(width * scale), Math.round(tall * scale)];
        if (element.width !== pixels[0]) element.width = pixels[0];
        if (element.height !== pixels[1]) element.height = pixels[1];
        const context = element.getContext('2d');
        context.setTransform(scale, 0, 0, scale, 0, 0);
        context.clearRect(0, 0, width, tall);
        paint(context, width, tall);
    }
    new ResizeObserver(() => {
        const before = size;
        measure();
        if (before && (before[0] !== size[0] || before[1] !== size[1])) repaint();
    }).observe(element);
    return { element, repaint };
}

/** Where the pointer is on a canvas, in units of the page. */
export function pointerAt(event) {
    const box = event.currentTarget.getBoundingClientRect();
    return [event.clientX - box.left, event.clientY - box.top, box.width, box.height];
}
