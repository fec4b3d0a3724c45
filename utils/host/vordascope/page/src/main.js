// Starts the page.
import 'uplot/dist/uPlot.min.css';
import '../style.css';
import { el, setText } from './dom.js';
import { emptyPage } from './empty.js';
import { Live } from './live.js';
import { bakedModel, canRead, chooseCaptures, isLive, startCode, watchCaptures } from './load.js';
import { VERSION } from './model.js';
import { notesOf } from './notices.js';
import { showPage } from './page.js';
import { Runs } from './runs.js';
import { theme } from './theme.js';

const root = document.getElementById('page');
const runs = new Runs();
const bar = el('progress', { 'aria-label': 'captures read' });
const part = el('span');
const reading = el('p', { class: 'progress' }, part, bar);
let end = null;
let following = null;

/** Why nothing of a model can be shown; '' where something can. */
function refusal(model) {
    if (model.vorda_page !== VERSION)
        return `This page reads version ${VERSION} of its model; this one is version ${model.vorda_page}.`;
    if (model.runs.length === 0) return notesOf(model).join(' ') || 'There is no snapshot in this.';
    return '';
}

/** Adds the runs of a model to those that are here; one without any changes nothing. */
function add(model) {
    root.removeAttribute('aria-busy');
    reading.remove();
    if (!model) return;
    const said = refusal(model);
    // An address leads to a view of the first captures, not of those that come after them.
    const fragment = end ? '' : window.location.hash;
    if (!said) runs.add(model);
    show({ fragment, said });
}

/** Shows the runs that are here, and what is to be `said` beside them. */
function show({ fragment = '', said = '', live = following, view = null }) {
    const before = end?.();
    if (runs.all.length > 0)
        end = showPage(root, runs, { open, theme, fragment, said, before, remove, live, view });
    else {
        end = null;
        root.replaceChildren(emptyPage(open, said), live?.element ?? '');
        document.title = 'vordascope';
    }
}

function remove(run) {
    runs.remove(run);
    show({});
}

/** Says that captures are being read, and how far; what showed before stays until they are. */
function busy(names) {
    const title = `Reading ${names.join(', ')}`;
    const tell = (read) => {
        bar.value = read;
        setText(part, `${title}: ${Math.floor(100 * read)} %`);
    };
    root.setAttribute('aria-busy', 'true');
    document.title = `${title} – vordascope`;
    document.body.append(reading);
    tell(0);
    return tell;
}

const open = canRead() ? async () => add(await chooseCaptures(busy)) : null;

if (canRead()) watchCaptures(add, busy);
const [baked] = await Promise.all([bakedModel(), startCode()]);
if (isLive()) following = new Live(runs, show);
else if (baked) add(baked);
else show({});
