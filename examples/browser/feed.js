// The list of messages, the newest first. The newest stands open, the others as the reader left them.

const kMostMessages = 200;
const kMostCharacters = 20000;

// What formatted JSON is coloured by: a text with what tells a key, a word, a number.
const kTokens = /("(?:\\.|[^"\\])*")(\s*:)?|\b(?:true|false|null)\b|-?\d+(?:\.\d+)?(?:[eE][+-]?\d+)?/g;

export class Feed {
    #list;
    #empty;
    #count;
    #clear;
    #received = 0;

    /** Fills `list`; shows `empty` while nothing is in it, how much came in `count`; `clear` empties it. */
    constructor(list, empty, count, clear) {
        this.#list = list;
        this.#empty = empty;
        this.#count = count;
        this.#clear = clear;
        clear.addEventListener("click", () => this.#removeAll());
    }

    add(message) {
        const before = this.#list.firstElementChild?.firstElementChild;
        if (before && !before.dataset.chosen) before.open = false;
        this.#list.prepend(entry(message));
        if (this.#list.childElementCount > kMostMessages) this.#list.lastElementChild.remove();
        this.#received += 1;
        this.#showCount();
    }

    #removeAll() {
        this.#list.replaceChildren();
        this.#received = 0;
        this.#showCount();
    }

    #showCount() {
        const shown = this.#list.childElementCount;
        this.#empty.hidden = shown > 0;
        this.#clear.hidden = shown === 0;
        const rest = this.#received > shown ? ` received, the last ${shown} shown` : " received";
        this.#count.textContent = shown > 0 ? this.#received.toLocaleString("en") + rest : "";
    }
}

function entry(message) {
    const details = made("details");
    const body = made("pre", "body");
    const summary = made("summary", "", head(message), made("span", "preview", preview(message)));
    summary.addEventListener("click", () => (details.dataset.chosen = "yes"));
    details.append(summary, body);
    // Written out when it is first seen: most messages of a busy receiver never are.
    details.addEventListener("toggle", () => details.open && !body.firstChild && body.append(...written(message)));
    details.open = true;
    return made("li", "", details);
}

function head({ header, json, size, time }) {
    const kind = header ?? (json === undefined ? "text" : "JSON");
    const clock = made("time", "", time.toTimeString().slice(0, 8));
    clock.dateTime = time.toISOString();
    const bytes = made("span", "size", `${size.toLocaleString("en")} ${size === 1 ? "byte" : "bytes"}`);
    return made("span", "head", made("span", header ? "kind" : "kind none", kind), bytes, clock);
}

// One line: the content without the type, which stands above it.
function preview({ header, json, text }) {
    const { HEADER, ...rest } = header === undefined ? {} : json;
    const words = header === undefined ? text : JSON.stringify(rest);
    return words.slice(0, 400).replace(/\s+/g, " ") || "(empty)";
}

function written({ text, json }) {
    const whole = json === undefined ? text : JSON.stringify(json, null, 2);
    const shown = whole.slice(0, kMostCharacters);
    const parts = json === undefined ? [shown] : coloured(shown);
    const left = whole.length - shown.length;
    if (left > 0) parts.push(made("span", "rest", `\n… ${left} more characters`));
    return parts;
}

function coloured(text) {
    const parts = [];
    let end = 0;
    for (const match of text.matchAll(kTokens)) {
        const [whole, words, colon = ""] = match;
        const kind = words ? (colon ? "key" : "words") : "value";
        parts.push(text.slice(end, match.index), made("span", kind, words ?? whole), colon);
        end = match.index + whole.length;
    }
    return [...parts, text.slice(end)];
}

function made(tag, className, ...children) {
    const element = document.createElement(tag);
    if (className) element.className = className;
    element.append(...children);
    return element;
}
