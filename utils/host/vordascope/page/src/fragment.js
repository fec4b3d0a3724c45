// What the page shows, as the fragment of its address: a link leads to the same view.

const KEYS = { path: 'path', n: 'n', a: 'a', only: 'only', query: 'find', step: 'step' };

/** The fragment, without "#", of a view; what is as it would be anyway is left out. */
export function toFragment(view, defaults) {
    const params = new URLSearchParams();
    if (view.path !== defaults.path) params.set(KEYS.path, view.path + 1);
    if (view.n !== defaults.n) params.set(KEYS.n, view.n + 1);
    if (view.a !== defaults.a) params.set(KEYS.a, view.a === null ? 'none' : view.a + 1);
    if (view.only) params.set(KEYS.only, 'changed');
    if (view.query) params.set(KEYS.query, view.query);
    if (view.step) params.set(KEYS.step, view.step.map((n) => n + 1).join('-'));
    for (const name of view.added) params.append('add', name);
    return params.toString();
}

/** The part of a view that a fragment names; what it says wrongly is left out. */
export function fromFragment(fragment) {
    const params = new URLSearchParams(fragment.replace(/^#/, ''));
    const view = {};
    const index = (text) => (/^[1-9]\d{0,8}$/.test(text ?? '') ? Number(text) - 1 : undefined);
    const take = (name, value) => {
        if (value !== undefined) view[name] = value;
    };
    take('path', index(params.get(KEYS.path)));
    take('n', index(params.get(KEYS.n)));
    take('a', params.get(KEYS.a) === 'none' ? null : index(params.get(KEYS.a)));
    if (params.get(KEYS.only) === 'changed') view.only = true;
    if (params.get(KEYS.query)) view.query = params.get(KEYS.query);
    const step = (params.get(KEYS.step) ?? '').split('-').map(index);
    if (step.length === 2 && step[0] < step[1]) view.step = step;
    if (params.has('add')) view.added = params.getAll('add');
    return view;
}
