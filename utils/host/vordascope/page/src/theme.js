// Light, dark or as the system is.
import { measureAgain } from './canvas.js';
import { forgetColours } from './dom.js';

const KEY = 'vordascope-theme';
const system = window.matchMedia('(prefers-color-scheme: dark)');

function stored() {
    try {
        return window.localStorage.getItem(KEY) ?? '';
    } catch {
        return ''; // A page from a file may have no storage.
    }
}

let chosen = stored();

const apply = (name) => {
    document.documentElement.dataset.theme = name;
    forgetColours();
};
const current = () => chosen || (system.matches ? 'dark' : 'light');

export const theme = {
    /** 'light' or 'dark', which shows now. */
    get name() {
        return current();
    },
    toggle() {
        chosen = current() === 'dark' ? 'light' : 'dark';
        apply(chosen);
        try {
            window.localStorage.setItem(KEY, chosen);
        } catch {
            // It then lasts as long as the page.
        }
    },
    /** Whatever the theme, paper is white, and as wide as the style says. */
    paper(printing) {
        apply(printing ? 'light' : current());
        document.documentElement.toggleAttribute('data-paper', printing);
        measureAgain();
    },
    /** Calls the listener when the system's theme changes. */
    listen(listener, signal) {
        system.addEventListener(
            'change',
            () => {
                apply(current());
                listener();
            },
            { signal },
        );
    },
};

apply(current());
