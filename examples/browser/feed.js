// The list of messages, the newest first. The newest is open, the others are as the reader left them.
import { copyText } from "./clipboard.js";
import { TypeFilter } from "./filter.js";
import { entry, kindOf } from "./message.js";

const kMostMessages = 200;

const numberOf = (item) => Number(item.dataset.number);

export class Feed {
    #parts;
    #filter;
    #received = 0;
    #isPaused = false;
    #waiting = [];      // came during the pause: [message, number], the oldest first
    #seen = 0;          // the number of the newest message that was in sight
    #opened = null;     // the newest message, while it is open only because it is the newest
    #why = { empty: "", cleared: "" };
    #wasCleared = false;

    /** `parts` are the page's elements: list, empty, count, newer, filter, types, pause and clear. */
    constructor(parts) {
        this.#parts = parts;
        this.#filter = new TypeFilter(parts.filter, parts.types, () => this.#applyFilter());
        parts.clear.addEventListener("click", () => this.#removeAll());
        parts.pause.addEventListener("click", () => this.#pause(!this.#isPaused));
        parts.newer.addEventListener("click", () => this.#showNewer());
        for (const scroller of [parts.list, document]) scroller.addEventListener("scroll", () => this.#show());
    }

    add(message) {
        this.#received += 1;
        this.#filter.offer(kindOf(message));
        if (this.#isPaused) this.#keep(message, this.#received);
        else this.#insert(message, this.#received);
        this.#show();
    }

    /** Why the list is empty; once the reader has cleared it, `cleared` is shown instead. */
    explain(empty, cleared = empty) {
        this.#why = { empty, cleared };
        this.#show();
    }

    #keep(message, number) {
        this.#waiting.push([message, number]);
        if (this.#waiting.length > kMostMessages) this.#waiting.shift();
    }

    #insert(message, number) {
        const { list } = this.#parts;
        const item = entry(message, number, copyText);
        item.hidden = !this.#filter.lets(item.dataset.kind);
        if (!item.hidden) this.#openInstead(item.firstElementChild);
        list.prepend(item);
        if (list.childElementCount > kMostMessages) list.lastElementChild.remove();
    }

    #openInstead(details) {
        if (this.#opened && !this.#opened.dataset.chosen) this.#opened.open = false;
        this.#opened = details;
        details.open = true;
    }

    #insertWaiting() {
        for (const [message, number] of this.#waiting.splice(0)) this.#insert(message, number);
    }

    #pause(isPaused) {
        this.#isPaused = isPaused;
        this.#parts.pause.textContent = isPaused ? "Go on" : "Pause";
        if (!isPaused) this.#insertWaiting();
        this.#show();
    }

    // What is shown during a pause stays: the pause goes on.
    #showNewer() {
        this.#insertWaiting();
        const first = this.#shown()[0];
        first?.scrollIntoView({ block: "start" });
        first?.querySelector("summary").focus({ preventScroll: true });
        this.#show();
    }

    #applyFilter() {
        for (const item of this.#parts.list.children) item.hidden = !this.#filter.lets(item.dataset.kind);
        const first = this.#shown()[0];
        if (first) this.#openInstead(first.firstElementChild);
        this.#show();
    }

    #removeAll() {
        this.#parts.list.replaceChildren();
        this.#waiting = [];
        this.#received = 0;
        this.#seen = 0;
        this.#opened = null;
        this.#wasCleared = true;
        this.#filter.forget();
        this.#show();
    }

    #shown() {
        return [...this.#parts.list.children].filter((item) => !item.hidden);
    }

    #show() {
        const shown = this.#shown();
        this.#showCount(shown.length);
        this.#showWhyEmpty(shown.length);
        this.#showNewerCount(shown);
        this.#parts.clear.hidden = this.#received === 0;
        this.#parts.pause.hidden = this.#received === 0 && !this.#isPaused;
    }

    #showCount(shown) {
        const received = `${this.#isPaused ? "Paused: " : ""}${this.#received.toLocaleString("en")} received`;
        const isCut = this.#filter.kind === null && !this.#isPaused;
        const rest = isCut ? `, the last ${shown} shown` : `, ${shown} shown`;
        this.#parts.count.textContent = this.#received === 0 ? "" : received + (shown < this.#received ? rest : "");
    }

    #showWhyEmpty(shown) {
        this.#parts.empty.hidden = shown > 0;
        this.#parts.empty.textContent = this.#reasonToBeEmpty();
    }

    #reasonToBeEmpty() {
        if (this.#isPaused && this.#waiting.length > 0) return "Paused. What came since then is not shown yet.";
        if (this.#filter.kind !== null) return `No message of the type ${this.#filter.kind} is left.`;
        return this.#wasCleared ? this.#why.cleared : this.#why.empty;
    }

    #showNewerCount(shown) {
        if (shown.length > 0 && this.#isInSight(shown[0])) this.#seen = Math.max(this.#seen, numberOf(shown[0]));
        const unseen = shown.filter((item) => numberOf(item) > this.#seen).length;
        const count = unseen + this.#waiting.filter(([message]) => this.#filter.lets(kindOf(message))).length;
        this.#parts.newer.hidden = count === 0;
        this.#parts.newer.textContent = `${count} newer`;
    }

    #isInSight(item) {
        const { top, bottom } = item.getBoundingClientRect();
        const list = this.#parts.list.getBoundingClientRect();
        return bottom > Math.max(0, list.top) && top < Math.min(innerHeight, list.bottom);
    }
}
