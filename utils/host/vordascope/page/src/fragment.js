// What the page shows, as the fragment of its address: a link leads to the same view.

/** The fragment, without "#", of a view; what is as it would be anyway is left out. */
export function toFragment(view, usual) {
    const params = new URLSearchParams();
    if (view.run !== usual.run) params.set('run', view.run + 1);
    if (view.n !== usual.n) params.set('n', view.n + 1);
    if (view.a !== usual.a || view.against !== usual.against)
        params.set('a', view.a === null ? 'none' : `${view.against + 1}.${view.a + 1}`);
    if (view.only) params.set('only', 'changed');
    if (view.query) params.set('find', view.query);
    if (view.step) params.set('step', view.step.map((n) => n + 1).join('-'));
    if (view.zoom) params.set('zoom', view.zoom.map((x) => Number(x.toPrecision(9))).join('_'));
    for (const key of ['align', 'band']) if (view[key] !== usual[key]) params.set(key, view[key]);
    if (view.ref) params.set('ref', 'a');
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
    take('run', index(params.get('run')));
    take('n', index(params.get('n')));
    if (params.get('a') === 'none') Object.assign(view, { against: null, a: null });
    // "3.7" is snapshot 7 of run 3; "7" one of the run that shows.
    const reference = (params.get('a') ?? '').split('.').map(index);
    if (reference.length === 1 && reference[0] !== undefined)
        Object.assign(view, { against: view.run ?? 0, a: reference[0] });
    if (reference.length === 2 && !reference.includes(undefined))
        Object.assign(view, { against: reference[0], a: reference[1] });
    if (params.get('only') === 'changed') view.only = true;
    if (params.get('find')) view.query = params.get('find');
    const step = (params.get('step') ?? '').split('-').map(index);
    if (step.length === 2 && step[0] < step[1]) view.step = step;
    const zoom = (params.get('zoom') ?? '').split('_').map(Number);
    if (zoom.length === 2 && zoom[0] < zoom[1]) view.zoom = zoom;
    if (params.get('align')) view.align = params.get('align');
    if (Number(params.get('band')) > 0 && Number(params.get('band')) < 1)
        view.band = Number(params.get('band'));
    if (params.get('ref') === 'a') view.ref = true;
    if (params.has('add')) view.added = params.getAll('add');
    return view;
}
