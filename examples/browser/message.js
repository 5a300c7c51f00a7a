// How one message looks in the list.

const kMostCharacters = 20000;

// Finds what to colour in formatted JSON: texts, with what marks a key, words and numbers.
const kTokens = /("(?:\\.|[^"\\])*")(\s*:)?|\b(?:true|false|null)\b|-?\d+(?:\.\d+)?(?:[eE][+-]?\d+)?/g;

// The keys under which messages have a name; the first that is there is shown before the type.
const kNames = ["serviceName", "name", "displayName", "fileName"];

/** The type of a message; "JSON" or "text" for one without a type. */
export function kindOf({ header, json }) {
    return header ?? (json === undefined ? "text" : "JSON");
}

/** The list's item for the message that came as the `number`th; `copy` is called with its text. */
export function entry(message, number, copy) {
    const details = made("details");
    const body = made("pre", "body");
    const summary = made("summary", "", head(message, number), made("span", "preview", preview(message)));
    summary.addEventListener("click", () => (details.dataset.chosen = "yes"));
    details.append(summary, body);
    // Written out when it is first seen: most messages of a busy receiver never are.
    details.addEventListener("toggle", () => details.open && !body.firstChild && body.append(...written(message)));
    const item = made("li", "", details, copyButton(message, copy));
    item.dataset.kind = kindOf(message);
    item.dataset.number = number;
    return item;
}

function copyButton({ text }, copy) {
    const button = made("button", "copy quiet", "Copy");
    button.type = "button";
    button.addEventListener("click", async () => {
        button.textContent = (await copy(text)) ? "Copied" : "Not copied";
        setTimeout(() => (button.textContent = "Copy"), 2000);
    });
    return button;
}

function head(message, number) {
    const { header, size, time } = message;
    const milliseconds = String(time.getMilliseconds()).padStart(3, "0");
    const clock = made("time", "", `${time.toTimeString().slice(0, 8)}.${milliseconds}`);
    clock.dateTime = time.toISOString();
    const bytes = made("span", "size", `${size.toLocaleString("en")} ${size === 1 ? "byte" : "bytes"}`);
    const kind = made("span", header ? "kind" : "kind none", kindOf(message));
    const title = made("span", "title", ...nameOf(message).map((name) => made("span", "name", name)), kind);
    return made("span", "head", title, made("span", "number", `#${number}`), bytes, clock);
}

function nameOf({ json }) {
    const names = kNames.map((key) => json?.[key]).filter((name) => typeof name === "string" && name !== "");
    return names.slice(0, 1).map((name) => name.slice(0, 100));
}

// One line: the content without the type, which is above it.
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
