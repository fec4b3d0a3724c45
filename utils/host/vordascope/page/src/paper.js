// What is printed: the key figures and courses on a sheet, then the differences, or where nothing is
// compared the cards; no more than people read on paper.
import { el } from './dom.js';

/** So many sheets, each of so much height as the style leaves of A4. */
const SHEETS = 6;
const HEIGHT = 1047;

/** How much of that is filled, since nothing is cut by an edge: of rows, and of cards. */
const ROWS = 0.88;
const CARDS = 0.58;

/** What can be left out, in order. */
const UNITS = ['.courses > .card', '.differences tr', '.cards > .card', '.fields tr'];

/** Leaves out what would be on further sheets, and says how much that is; `printing`, or no more. */
export function fitPaper(root, printing) {
    for (const one of root.querySelectorAll('.off-paper')) one.classList.remove('off-paper');
    root.querySelector('.paper-note')?.remove();
    if (!printing) return;
    const shown = (one) => one.checkVisibility();
    const filled = [...root.querySelectorAll('.cards > .card')].some(shown) ? CARDS : ROWS;
    const units = UNITS.flatMap((unit) => [...root.querySelectorAll(unit)].filter(shown));
    const fits = (count) => {
        units.forEach((one, i) => {
            one.classList.toggle('off-paper', i >= count);
        });
        return root.scrollHeight < SHEETS * HEIGHT * filled;
    };
    if (fits(units.length)) return;
    let [most, least] = [units.length, 0];
    while (most - least > 1) {
        const middle = (most + least) >> 1;
        if (fits(middle)) least = middle;
        else most = middle;
    }
    fits(least);
    const text = `${units.length - least} more stand in the page alone.`;
    root.append(el('p', { class: 'paper-note' }, text));
}
