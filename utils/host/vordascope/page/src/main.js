// Starts the page.
import 'uplot/dist/uPlot.min.css';
import '../style.css';
import { emptyPage } from './empty.js';
import { bakedModel, canRead, chooseCaptures, watchCaptures } from './load.js';
import { showPage } from './page.js';
import { theme } from './theme.js';

const root = document.getElementById('page');
let end = null;

function show(model) {
    root.removeAttribute('aria-busy');
    if (!model) return;
    // An address leads to a view of the first captures, not of those that come after them.
    if (end)
        window.history.replaceState(null, '', window.location.pathname + window.location.search);
    end?.();
    end = showPage(root, model, { open, theme });
}

/** Says that captures are being read; what showed before stays until they are. */
function busy(names) {
    root.setAttribute('aria-busy', 'true');
    document.title = `reading ${names.join(', ')} – vordascope`;
}

const open = canRead() ? async () => show(await chooseCaptures(busy)) : null;

if (canRead()) watchCaptures(show, busy);
const baked = await bakedModel();
if (baked) show(baked);
else root.replaceChildren(emptyPage(open));
