// Follows a camera: what `vordascope live` sends (see follow.h) goes into the runs of the page.
//
// The page goes along while it shows the newest snapshot and nothing is zoomed, measured or compared
// with; else the view holds, and what arrives waits until somebody returns to now.
import { el, setText } from './dom.js';
import { named, pageWith } from './load.js';
import { save } from './out.js';

/** So much may wait while the view holds, in characters; more is fetched anew. */
const WAITING = 1 << 25;

/** From one look at whether new fields want charts of their own to the next. */
const RESHAPE_PAUSE = 3000;

export class Live {
    #runs;
    #show;
    #model = null;
    #reference = null;
    #source = null;
    #page = null;
    #waiting = [];
    #size = 0;
    #newest = null; // when the newest snapshot came
    #ended = false;
    #last = null; // the whole state when all has ended
    #lost = false;
    #held = false;
    #frame = null;
    #reshape = null;

    /**
     * @param {Runs} runs
     * @param {(options: object) => void} show shows them anew, see main.js
     */
    constructor(runs, show) {
        this.#runs = runs;
        this.#show = show;
        this.age = el('span', { class: 'age', role: 'status' });
        this.back = el(
            'button',
            { type: 'button', title: 'go along with the camera again (End)' },
            'Back to now',
        );
        this.back.addEventListener('click', () => this.now());
        const mark = el('button', { type: 'button', title: 'note what you change (M)' }, 'Mark…');
        mark.addEventListener('click', () => this.mark());
        const kept = el('button', { type: 'button', title: 'save all as one file' }, 'Save');
        kept.addEventListener('click', () => this.save());
        this.element = el('div', { class: 'live' }, this.age, this.back, mark, kept);
        window.addEventListener('keydown', (event) => this.#key(event), { capture: true });
        this.#tellAge();
        setInterval(() => this.#tellAge(), 200);
        this.#connect();
    }

    #connect() {
        this.#source?.close();
        this.#source = new EventSource('events');
        this.#source.addEventListener('open', () => {
            this.#lost = false;
        });
        this.#source.addEventListener('error', () => {
            this.#lost = true;
            if (this.#ended) this.#source.close();
        });
        this.#source.addEventListener('state', ({ data }) => this.#whole(JSON.parse(data)));
        this.#source.addEventListener('news', ({ data }) => this.#take(data));
    }

    /** Takes the whole state. */
    #whole(state) {
        const { model, reference, age, ended } = state;
        this.#newest = age === null ? null : performance.now() - age * 1000;
        this.#ended = ended;
        if (ended) this.#last = model;
        if (this.#held && this.#page) {
            this.#drop();
            this.#waiting = [{ state }];
            return;
        }
        this.#adopt(model, reference);
    }

    #adopt(model, reference) {
        this.#drop();
        if (this.#model) this.#runs.removeModel(this.#model);
        this.#model = named(model);
        const runs = model.runs.length > 0 ? this.#runs.add(this.#model) : [];
        this.#reference = runs.find((run) => run.number === reference) ?? null;
        this.#show({ live: this, view: this.#newestView() });
    }

    /** The view that goes along: the newest run's last snapshot, against the reference. */
    #newestView() {
        const { all } = this.#runs;
        const own = all.filter((run) => run.model === this.#model && run !== this.#reference);
        const run = own.at(-1) ?? this.#reference;
        const against = this.#reference && run !== this.#reference ? this.#reference : null;
        return {
            run: Math.max(all.indexOf(run), 0),
            n: Math.max((run?.length ?? 1) - 1, 0),
            against: against && all.indexOf(against),
            a: against && against.length - 1,
            zoom: null,
            step: null,
        };
    }

    /** The page of a run has begun: see showRun(). */
    attach({ store, run, sections, bar }) {
        this.#page = { store, run, sections };
        bar.append(this.element);
        store.listen((view) => this.#noticed(view));
        this.#noticed(store.view);
    }

    /** Whether the view goes along. */
    #noticed(view) {
        const now = this.#newestView();
        const held = Object.keys(now).some((key) => (view[key] ?? null) !== now[key]);
        this.back.hidden = !held;
        if (this.#held === held) return;
        this.#held = held;
        this.element.classList.toggle('held', held);
        this.#tellAge();
        if (!held) this.#catchUp();
    }

    /** Goes back to now. */
    now() {
        if (!this.#page) return;
        this.#page.store.set(this.#newestView());
        this.#page.store.flush();
    }

    #drop() {
        this.#waiting = [];
        this.#size = 0;
    }

    /** Takes news, or lets them wait. */
    #take(text) {
        this.#newest = performance.now();
        if (!this.#held) return this.#apply(JSON.parse(text));
        this.#size += text.length;
        this.#waiting.push({ text });
        if (this.#size > WAITING) this.#waiting = [];
    }

    /** Takes what has waited. */
    #catchUp() {
        const waiting = this.#waiting;
        const overflown = this.#size > WAITING;
        this.#drop();
        if (overflown) return this.#connect();
        for (const { state, text } of waiting) {
            if (state) this.#adopt(state.model, state.reference);
            else if (!this.#apply(JSON.parse(text))) return;
        }
    }

    /** Returns whether the news fit what is here; if not, all is fetched anew. */
    #apply({ add = [], forget = [], marks = [] }) {
        const runOf = (number) =>
            this.#runs.all.find((run) => run.model === this.#model && run.number === number);
        let reshaped = false;
        for (const news of add) {
            const run = runOf(news.run);
            this.#model?.names.push(...news.names);
            if (!run) {
                this.#connect();
                return false;
            }
            reshaped = run.append(news, this.#model.names) || reshaped;
        }
        for (const [number, count] of forget) {
            const run = runOf(number);
            if (count < run?.length) run.forget(count);
            else if (run) this.#runs.remove(run);
            reshaped ||= !run || run.length === 0;
        }
        for (const [number, n, text] of marks) runOf(number)?.marks.push([n, text]);
        this.#showNewest();
        if (reshaped) this.#reshapeSoon();
        return true;
    }

    /** Shows what is here in the next frame, however much comes until then. */
    #showNewest() {
        if (!this.#page) return;
        const { store, sections } = this.#page;
        if (this.#frame === null)
            this.#frame = requestAnimationFrame(() => {
                this.#frame = null;
                if (!this.#held) for (const section of sections) section.grow?.();
            });
        store.set(this.#newestView());
        store.touch('n'); // of a ring that is full, it is another one under the same number
    }

    /** Builds the page anew for fields that vary now. */
    #reshapeSoon() {
        this.#reshape ??= setTimeout(() => {
            this.#reshape = null;
            if (!this.#held) this.#show({ live: this, view: this.#newestView() });
        }, RESHAPE_PAUSE);
    }

    #tellAge() {
        const seconds = this.#newest === null ? null : (performance.now() - this.#newest) / 1000;
        const text =
            seconds === null ? 'no snapshot yet' : `newest snapshot ${seconds.toFixed(1)} s ago`;
        const state = this.#ended
            ? 'the input has ended'
            : this.#lost
              ? 'the connection is lost'
              : this.#held
                ? 'held'
                : 'live';
        setText(this.age, this.#ended ? state : `${state} · ${text}`);
        this.element.dataset.state = state;
    }

    #key(event) {
        if (event.ctrlKey || event.metaKey || event.altKey) return;
        if (event.target.closest?.('input, select, textarea, dialog')) return;
        if (event.key === 'End') this.now();
        else if (event.key === 'm' || event.key === 'M') this.mark();
        else return;
        event.preventDefault();
        event.stopImmediatePropagation();
    }

    /** Asks what was changed, and notes it at the newest snapshot, in every page. */
    async mark() {
        const text = window.prompt('What did you change?');
        if (text?.trim()) await fetch(`mark?text=${encodeURIComponent(text)}`);
    }

    /** Saves all that the server has, or had at its end, as `report` would. */
    async save() {
        const model = this.#last ?? (await wholeModel());
        save('live.html', new Blob([await pageWith(model)], { type: 'text/html' }));
    }
}

/** The model of the whole state, which is the first event. */
function wholeModel() {
    return new Promise((resolve, reject) => {
        const source = new EventSource('events');
        source.addEventListener('error', () => {
            source.close();
            reject(new Error('the connection is lost'));
        });
        source.addEventListener('state', ({ data }) => {
            source.close();
            resolve(JSON.parse(data).model);
        });
    });
}
