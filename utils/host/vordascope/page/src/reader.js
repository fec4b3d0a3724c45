// Calls the reader that was compiled for WebAssembly (see wasm.cpp).

/** Whether a capture is packed with gzip. */
async function isPacked(content) {
    const [first, second] = new Uint8Array(await content.slice(0, 2).arrayBuffer());
    return first === 0x1f && second === 0x8b;
}

/**
 * The bytes of a capture in pieces; null at the end where the rest of an archive is lost. `took` is
 * called with how many bytes of its content each took.
 */
async function* piecesOf(content, packed, piece, took) {
    if (!packed) {
        for (let at = 0; at < content.size; at += piece) {
            const bytes = new Uint8Array(await content.slice(at, at + piece).arrayBuffer());
            took(bytes.length);
            yield bytes;
        }
        return;
    }
    const counted = new TransformStream({
        transform(bytes, stream) {
            took(bytes.length);
            stream.enqueue(bytes);
        },
    });
    const unpacked = content
        .stream()
        .pipeThrough(counted)
        .pipeThrough(new DecompressionStream('gzip'))
        .getReader();
    try {
        for (;;) {
            const { done, value } = await unpacked.read();
            if (done) return;
            for (let at = 0; at < value.length; at += piece) yield value.subarray(at, at + piece);
        }
    } catch {
        yield null;
    }
}

/**
 * Reads captures, in this order; the same as `vordascope report` makes of them.
 * @param {ArrayBuffer} wasm the compiled reader
 * @param {{name: string, content: Blob}[]} captures
 * @param {number} piece how many bytes are read at a time
 * @param {(part: number) => void} progress told which part of their bytes is read
 * @returns {Promise<string>} their model, as JSON
 */
export async function readModel(wasm, captures, piece = 1 << 20, progress = () => {}) {
    const whole = captures.reduce((sum, { content }) => sum + content.size, 0);
    let read = 0;
    const took = (bytes) => {
        read += bytes;
        progress(read / whole);
    };
    // A new instance each time: its memory goes with it.
    const { instance } = await WebAssembly.instantiate(wasm);
    const { memory, _initialize, room, begin_file, unpacked, feed, finish, size } =
        instance.exports;
    const put = (bytes) => {
        const at = room(bytes.length); // before the buffer is looked at, which grows by it
        new Uint8Array(memory.buffer, at, bytes.length).set(bytes);
        return bytes.length;
    };
    _initialize();
    for (const { name, content } of captures) {
        begin_file(put(new TextEncoder().encode(name)));
        const packed = await isPacked(content);
        if (packed) unpacked(1);
        for await (const bytes of piecesOf(content, packed, piece, took)) {
            if (bytes) feed(put(bytes));
            else unpacked(0);
        }
    }
    const at = finish();
    return new TextDecoder().decode(new Uint8Array(memory.buffer, at, size()));
}
