// Debian's Chromium, driven by playwright-core, for the tests and the benchmark of the page.
import { createRequire } from 'node:module';

const require = createRequire(
    new URL('../../utils/host/vordascope/page/package.json', import.meta.url),
);

/** Starts a browser that talks to nobody; VORDA_CHROMIUM names another one than Debian's. */
export const launch = () =>
    require('playwright-core').chromium.launch({
        executablePath: process.env.VORDA_CHROMIUM ?? '/usr/bin/chromium',
        args: [
            '--no-sandbox',
            '--disable-gpu',
            '--disable-quic',
            '--no-first-run',
            '--disable-background-networking',
            '--disable-component-update',
            '--disable-sync',
        ],
    });
