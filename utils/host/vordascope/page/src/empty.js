// The page without a capture: how to get one into it.
import { el } from './dom.js';

/**
 * @param {(() => void)|null} open chooses files; null where the page has no reader
 * @param {string} said why what was read is not shown; '' where nothing was
 */
export function emptyPage(open, said) {
    const ways = open
        ? [
              el('p', {}, 'Drop captures of vorda here, paste one, or'),
              el(
                  'p',
                  {},
                  el(
                      'button',
                      { type: 'button', class: 'primary', on: { click: open } },
                      'Choose files…',
                  ),
              ),
          ]
        : [
              el(
                  'p',
                  {},
                  'This page was built without a reader: let vordascope report bake a capture into it.',
              ),
          ];
    return el(
        'main',
        { class: 'empty' },
        el('h1', {}, 'vordascope'),
        said ? el('p', { class: 'notice', role: 'alert' }, said) : null,
        ways,
        el(
            'dl',
            {},
            el('dt', {}, 'one capture'),
            el('dd', {}, el('code', {}, 'ssh camera vorda all > capture.txt')),
            el('dt', {}, 'a series'),
            el('dd', {}, el('code', {}, 'ssh camera vorda-record -n 200 all > series.txt')),
        ),
        el(
            'p',
            { class: 'hint' },
            'Two captures are compared, runs laid over each other. Nothing leaves this page: it asks for nothing and sends nothing.',
        ),
    );
}
