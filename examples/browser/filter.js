// The choice of one type of messages: a button that opens a row of buttons, one for each type that has come. It is not
// a <select>, whose list takes the arrow keys of a remote control for itself.

const kMostKinds = 100;

export class TypeFilter {
    #button;
    #box;
    #onChoice;
    #kinds = [];
    #kind = null;

    /** `button` opens and closes `box`; `onChoice` is called when another type was chosen. */
    constructor(button, box, onChoice) {
        this.#button = button;
        this.#box = box;
        this.#onChoice = onChoice;
        button.addEventListener("click", () => this.#toggle());
        box.addEventListener("keydown", ({ key }) => key === "Escape" && this.#toggle());
        this.forget();
    }

    /** The type that was chosen; null for all of them. */
    get kind() {
        return this.#kind;
    }

    lets(kind) {
        return this.#kind === null || this.#kind === kind;
    }

    /** Offers a type, if it is a new one. */
    offer(kind) {
        if (this.#kinds.includes(kind) || this.#kinds.length === kMostKinds) return;
        this.#kinds.push(kind);
        this.#kinds.sort();
        const after = this.#box.children[this.#kinds.indexOf(kind) + 1] ?? null;
        this.#box.insertBefore(this.#choice(kind, kind), after);
        this.#button.hidden = false;
    }

    /** Offers nothing any more, and chooses all. */
    forget() {
        this.#kinds = [];
        this.#kind = null;
        this.#button.hidden = true;
        this.#box.replaceChildren(this.#choice("All types", null));
        this.#open(false);
    }

    #choice(words, kind) {
        const button = document.createElement("button");
        button.type = "button";
        button.className = "quiet";
        button.textContent = words;
        button.kind = kind;
        button.addEventListener("click", () => this.#choose(kind));
        return button;
    }

    #choose(kind) {
        this.#kind = kind;
        this.#toggle();
        this.#onChoice();
    }

    // The focus goes along: what the arrow keys find below the button may be a message.
    #toggle() {
        this.#open(this.#box.hidden);
        const chosen = this.#box.querySelector("[aria-pressed=true]");
        (this.#box.hidden ? this.#button : chosen).focus();
    }

    #open(isOpen) {
        this.#box.hidden = !isOpen;
        for (const choice of this.#box.children) choice.setAttribute("aria-pressed", choice.kind === this.#kind);
        this.#button.setAttribute("aria-expanded", isOpen);
        this.#button.textContent = `Type: ${this.#kind ?? "all"}`;
    }
}
