// A canvas that is sharp on every screen and draws itself again in another size.
import { el, sizeObserver } from './dom.js';

let layout = 0;

/** To be called when drawings have another size at once, before any observer is told. */
export function measureAgain() {
    layout += 1;
}

/** Which layout it is that sizes were measured in. */
export const currentLayout = () => layout;

/**
 * @param {(context: CanvasRenderingContext2D, width: number, height: number) => void} paint draws
 *     everything, in units of the page
 * @param {object} options `ratio`, the height for a width, or `height` itself; `width` where it is
 *     not that of its place; `label`, what it shows, for those who cannot see it; `className`
 * @returns {{element: HTMLCanvasElement, repaint: () => void, reshape: (ratio: number) => void}}
 */
export function canvas(paint, { ratio, height, width, label, className = '' }) {
    const element = el('canvas', { role: 'img', 'aria-label': label, class: className });
    element.paint = paint;
    element.style.width = width ? `${width}px` : '100%';
    if (height) element.style.height = `${height}px`;
    else element.style.aspectRatio = String(1 / ratio);

    // The size is read when it changes, not for each repaint, which would lay out the page anew.
    let size = width ? [width, height ?? width * ratio] : null;
    let measuredIn = layout;
    let shape = ratio;
    let owed = false; // what was to be painted while there was no room
    function measure() {
        size = [element.clientWidth, element.clientHeight];
        measuredIn = layout;
    }
    function repaint() {
        if (!width && (!size || measuredIn !== layout)) measure();
        const [wide, tall] = size;
        if (wide === 0 || tall === 0) {
            size = null;
            owed = true;
            return;
        }
        owed = false;
        const scale = window.devicePixelRatio || 1;
        const pixels = [Math.round(wide * scale), Math.round(tall * scale)];
        if (element.width !== pixels[0]) element.width = pixels[0];
        if (element.height !== pixels[1]) element.height = pixels[1];
        const context = element.getContext('2d');
        context.setTransform(scale, 0, 0, scale, 0, 0);
        context.clearRect(0, 0, wide, tall);
        paint(context, wide, tall);
    }
    if (!width) {
        sizeObserver(() => {
            const before = size;
            measure();
            const resized = before && (before[0] !== size[0] || before[1] !== size[1]);
            if (owed || resized) repaint();
        }).observe(element);
    }
    /** Gives it another height for its width. */
    function reshape(to) {
        if (to === shape) return;
        shape = to;
        element.style.aspectRatio = String(1 / shape);
        size = null;
    }
    return { element, repaint, reshape };
}

/** Where the pointer is on a canvas, in units of the page. */
export function pointerAt(event) {
    const box = event.currentTarget.getBoundingClientRect();
    return [event.clientX - box.left, event.clientY - box.top, box.width, box.height];
}
