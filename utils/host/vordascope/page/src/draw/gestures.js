// What a person does on a chart of uPlot beside what uPlot hears itself: clicks, the wheel, two fingers.

/**
 * @param {uPlot} plot
 * @param {object} options `onPick`, `onWheel` and `onPinch` of a chart, see chart.js
 */
export function listen(plot, { onPick, onWheel, onPinch }) {
    const { over } = plot;
    let pressedAt = 0;
    if (onPick) {
        over.addEventListener('mousedown', (event) => {
            pressedAt = event.clientX;
        });
        over.addEventListener('click', (event) => {
            if (Math.abs(event.clientX - pressedAt) < 3 && plot.cursor.idx !== null)
                onPick(plot.cursor.idx, event);
        });
    }
    if (onWheel) {
        over.addEventListener(
            'wheel',
            (event) => onWheel(event, plot.posToVal(event.offsetX, 'x')),
            { passive: false },
        );
    }
    if (onPinch) watchPinch(plot, onPinch);
}

/** Two fingers: how much farther they are from each other, and the place between them. */
function watchPinch(plot, onPinch) {
    const { over } = plot;
    const fingers = new Map();
    const spread = () => {
        const [p, q] = [...fingers.values()];
        return [Math.max(Math.abs(p - q), 8), (p + q) / 2];
    };
    over.style.touchAction = 'pan-y';
    over.addEventListener('pointerdown', (event) => {
        if (event.pointerType === 'touch') fingers.set(event.pointerId, event.offsetX);
    });
    over.addEventListener('pointermove', (event) => {
        if (!fingers.has(event.pointerId)) return;
        const before = fingers.size === 2 && spread();
        fingers.set(event.pointerId, event.offsetX);
        if (!before) return;
        const [wide, middle] = spread();
        onPinch(before[0] / wide, plot.posToVal(middle, 'x'));
    });
    for (const name of ['pointerup', 'pointercancel'])
        over.addEventListener(name, (event) => fingers.delete(event.pointerId));
}
