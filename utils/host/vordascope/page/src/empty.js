// The page without a capture: how to get one into it.
import { template } from './dom.js';

/**
 * @param {(() => void)|null} open chooses files; null where the page has no reader
 * @param {string} said why what was read is not shown; '' where nothing was
 */
export function emptyPage(open, said) {
    const element = template('empty');
    const notice = element.querySelector('.notice');
    notice.textContent = said;
    if (!said) notice.remove();
    if (open) element.querySelector('button').addEventListener('click', open);
    for (const other of element.querySelectorAll(open ? '.bakes' : '.reads')) other.remove();
    return element;
}
