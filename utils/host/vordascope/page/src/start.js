// Runs the page's script, which stands deflated in it: it makes up most of the file.
import { inflated } from './inflate.js';

try {
    const script = document.createElement('script');
    script.type = 'module';
    script.textContent = new TextDecoder().decode(await inflated('code'));
    document.head.append(script);
    // It runs all the same, and the file that is saved of a page is as the page came.
    script.remove();
} catch (error) {
    document.getElementById('page').textContent =
        `This browser cannot unpack the script of this page: ${error.message}`;
}
