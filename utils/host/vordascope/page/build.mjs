// Makes of index.html, the modules, the style and the reader one HTML file that asks for nothing. The
// modules and the reader stand deflated in it: see src/start.js.
//
//     node build.mjs OUT.html [READER.wasm]
//
// OUT.html.figures gets the names and fields of its key figures, a line each, for what is baked in.
// Without a reader the page shows what `vordascope report` bakes in, and reads no capture itself.
import { createHash } from 'node:crypto';
import { readFileSync, writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { deflateSync } from 'node:zlib';
import { build } from 'esbuild';
import { FIGURES } from './src/known.js';

const [out, reader] = process.argv.slice(2);
if (!out) {
    console.error('usage: node build.mjs OUT.html [READER.wasm]');
    process.exit(2);
}

const here = (name) => fileURLToPath(new URL(name, import.meta.url));

const deflated = (bytes) => deflateSync(bytes, { level: 9 }).toString('base64');

/** The texts that a module and what it imports become: { js, css }, '' for none. */
async function bundled(module) {
    const { outputFiles } = await build({
        entryPoints: [here(module)],
        bundle: true,
        format: 'esm',
        target: 'es2022',
        minify: true,
        write: false,
        outdir: 'bundle',
    });
    const textOf = (suffix) =>
        outputFiles.find(({ path }) => path.endsWith(suffix))?.text.trim() ?? '';
    return { js: textOf('.js'), css: textOf('.css') };
}

const { js: code, css: style } = await bundled('src/main.js');
const { js: start } = await bundled('src/start.js');

// Hashes instead of 'unsafe-inline': nothing that a capture could smuggle in ever runs or styles.
const hash = (text) => `'sha256-${createHash('sha256').update(text).digest('base64')}'`;
const parts = {
    licence: readFileSync(here('node_modules/uplot/LICENSE'), 'utf8').trim(),
    start,
    style,
    code: deflated(code),
    reader: reader ? deflated(readFileSync(reader)) : '',
    policy: [
        "default-src 'none'",
        `script-src ${hash(start)} ${hash(code)}${reader ? " 'wasm-unsafe-eval'" : ''}`,
        `style-src ${hash(style)}`,
        "base-uri 'none'",
        "form-action 'none'",
    ].join('; '),
};

const html = readFileSync(here('index.html'), 'utf8')
    .replace(/>\n</g, '><') // no text between elements that are copied
    .replace(/\{\{(\w+)\}\}/g, (_, name) => parts[name]);
writeFileSync(out, html);
writeFileSync(`${out}.figures`, FIGURES.map(([title, field]) => `${title}\t${field}\n`).join(''));
