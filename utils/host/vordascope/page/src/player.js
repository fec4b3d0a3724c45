// Plays a run: a step after another until its end.
const STEP = 1000 / 15;

/**
 * @param {Store} store whose n it moves
 * @param {number} last the last snapshot
 * @param {(playing: boolean) => void} onChange
 * @returns {{toggle(), stop()}}
 */
export function player(store, last, onChange) {
    let timer = null;

    function stop() {
        clearInterval(timer);
        if (timer !== null) onChange(false);
        timer = null;
    }
    function step() {
        if (store.view.n === last) stop();
        else store.set({ n: store.view.n + 1 });
    }
    return {
        stop,
        toggle() {
            if (timer !== null) return stop();
            if (last < 2) return;
            // From the end it begins anew.
            if (store.view.n === last) store.set({ n: 0 });
            timer = setInterval(step, STEP);
            onChange(true);
        },
    };
}
