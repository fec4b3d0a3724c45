// Plays a run: at the speed of its recording, or so many times faster or slower.
import { placeOf } from './course.js';

/** So many frames a second where the recording has no time. */
export const RATE = 15;

/** How many times the recording's speed, and how that is written. */
export const SPEEDS = [
    [0.1, '⅒×'],
    [0.25, '¼×'],
    [0.5, '½×'],
    [1, '1×'],
    [4, '4×'],
    [16, '16×'],
];

/** The speed lasts as long as the page. */
let speed = 1;

/** When each snapshot shows, in seconds; frames that were missed take their time too. */
function timesOf(run) {
    if (run.timed) return run.axis;
    let frames = 0;
    return Float64Array.from({ length: run.length }, (_, n) => {
        frames += n && 1 + (run.missed.get(n) ?? 0);
        return frames / RATE;
    });
}

/**
 * @param {Store} store whose n it moves
 * @param {Run} run
 * @param {(playing: boolean) => void} onChange
 * @returns {{toggle(), stop(), speed}}
 */
export function player(store, run, onChange) {
    let due = null;
    let times = [];
    // The snapshot that was shown last, and the recording's time and the clock's when it was.
    let shown = 0;
    let from = [0, 0];

    function begin(n) {
        shown = n;
        from = [times[n], performance.now()];
    }
    function stop() {
        if (due === null) return;
        cancelAnimationFrame(due);
        due = null;
        onChange(false);
    }
    function step() {
        const last = times.length - 1;
        // Somebody has moved on by the slider.
        if (store.view.n !== shown) begin(store.view.n);
        const [time, clock] = from;
        shown = placeOf(times, time + ((performance.now() - clock) / 1000) * speed);
        store.set({ n: shown });
        if (shown >= last) stop();
        else due = requestAnimationFrame(step);
    }
    return {
        stop,
        toggle() {
            if (due !== null) return stop();
            if (run.length < 3) return;
            times = timesOf(run);
            // From the end it begins anew.
            if (store.view.n >= run.length - 1) store.set({ n: 0 });
            begin(store.view.n);
            due = requestAnimationFrame(step);
            onChange(true);
        },
        get speed() {
            return speed;
        },
        set speed(times) {
            begin(store.view.n);
            speed = times;
        },
    };
}
