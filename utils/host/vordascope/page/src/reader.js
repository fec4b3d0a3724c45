// Calls the reader that was compiled for WebAssembly (see wasm.cpp).

/**
 * Reads captures, in this order; the same as `vordascope report` makes of them.
 * @param {ArrayBuffer} wasm the compiled reader
 * @param {{name: string, content: Blob}[]} captures
 * @param {number} piece how many bytes are read at a time
 * @returns {Promise<string>} their model, as JSON
 */
export async function readModel(wasm, captures, piece = 1 << 20) {
    // A new instance each time: its memory goes with it.
    const { instance } = await WebAssembly.instantiate(wasm);
    const { memory, _initialize, room, begin_file, feed, finish, size } = instance.exports;
    const put = (bytes) => {
        const at = room(bytes.length); // before the buffer is looked at, which grows by it
        new Uint8Array(memory.buffer, at, bytes.length).set(bytes);
        return bytes.length;
    };
    _initialize();
    for (const { name, content } of captures) {
        begin_file(put(new TextEncoder().encode(name)));
        for (let at = 0; at < content.size; at += piece)
            feed(put(new Uint8Array(await content.slice(at, at + piece).arrayBuffer())));
    }
    const at = finish();
    return new TextDecoder().decode(new Uint8Array(memory.buffer, at, size()));
}
