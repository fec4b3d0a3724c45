// Starts the page.
import 'uplot/dist/uPlot.min.css';
import '../style.css';
import { bakedModel, watchCaptures } from './load.js';

const show = (model) => {
    document.getElementById('page').textContent = model
        ? model.files.join(' ')
        : 'Drop a capture here';
};

watchCaptures(show);
show(await bakedModel());
