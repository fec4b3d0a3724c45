// What is large stands in the page as base64 of what deflates it.

/** The text of a data block of the page, '' for an empty one. */
export const contentOf = (id) => document.getElementById(id).textContent.trim();

/** The bytes of a data block of the page. */
export async function inflated(id) {
    const text = atob(contentOf(id));
    const bytes = new Uint8Array(text.length);
    for (let i = 0; i < text.length; i++) bytes[i] = text.charCodeAt(i);
    const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream('deflate'));
    return new Response(stream).arrayBuffer();
}
