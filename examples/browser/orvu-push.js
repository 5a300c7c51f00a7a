/**
 * Attaches a page to an Orvu push server and stays attached. No dependencies; types in orvu-push.d.ts.
 *
 *     const push = new OrvuPush("ws://192.168.0.10:34000");
 *     push.addEventListener("message", (event) => show(event.header, event.json));
 *     push.addEventListener("state", (event) => console.log(event.description));
 *     push.open();
 *
 * @module
 */

// The longest text that the server takes, in UTF-8.
const kLongestText = 65536;

const kDefaults = {
    firstPauseSeconds: 1,
    longestPauseSeconds: 30,
    attemptSeconds: 10,
    echoSeconds: 10,
    queueLimit: 16,
    random: Math.random,
    clock: {
        now: () => Date.now(),
        setTimeout: (callback, milliseconds) => globalThis.setTimeout(callback, milliseconds),
        clearTimeout: (timer) => globalThis.clearTimeout(timer),
    },
};

/** How many bytes of UTF-8 the server would still take after `text`; negative for one that is too long. */
export function bytesLeft(text) {
    return kLongestText - new TextEncoder().encode(text).length;
}

/** Why a text was not sent, or not echoed; `code` names the reason. */
export class OrvuPushError extends Error {
    constructor(code, message) {
        super(message);
        this.name = "OrvuPushError";
        this.code = code;
    }
}

/** The state of the connection changed. */
export class OrvuStateEvent extends Event {
    constructor(state, description, retryInSeconds) {
        super("state");
        this.state = state;
        this.description = description;
        this.retryInSeconds = retryInSeconds;
    }
}

/** A pushed message. `json` is undefined for one that is not JSON, `header` for one without a "HEADER" text. */
export class OrvuMessageEvent extends Event {
    constructor(bytes, time) {
        super("message");
        this.bytes = bytes;
        this.size = bytes.length;
        this.time = time;
        this.text = new TextDecoder().decode(bytes);
        this.json = parsed(this.text);
        this.header = typeof this.json?.HEADER === "string" ? this.json.HEADER : undefined;
    }
}

/** A text of this page that came back. */
export class OrvuEchoEvent extends Event {
    constructor(text) {
        super("echo");
        this.text = text;
    }
}

/** One page's attachment to one push server. Events: "state", "message", "echo". */
export class OrvuPush extends EventTarget {
    #url;
    #options;
    #state = "closed";
    #socket = null;
    #failures = 0;      // attempts and connections that ended, since the last attachment
    #retryAt;           // on the clock, while pausing
    #timer;             // bounds the attempt, the pause or the echo: whatever the state waits for
    #texts = [];        // that wait for their echoes, in the order in which they were sent

    /**
     * @param {string} url such as "ws://192.168.0.10:34000"
     * @param {object} [options] see orvu-push.d.ts
     */
    constructor(url, options = {}) {
        super();
        this.#url = url;
        this.#options = { ...kDefaults, ...options };
    }

    get url() {
        return this.#url;
    }

    /** "closed", "connecting", "attached", "refused-or-unreachable" or "lost". */
    get state() {
        return this.#state;
    }

    /** How long the pause before the next attempt still lasts; undefined in other states. */
    get retryInSeconds() {
        if (this.#retryAt === undefined) return undefined;
        return Math.max(0, this.#retryAt - this.#options.clock.now()) / 1000;
    }

    /** The state in words. */
    get description() {
        switch (this.#state) {
            case "connecting": return "connecting";
            case "attached": return "attached";
            case "refused-or-unreachable": return `refused or unreachable, ${this.#nextAttempt()}`;
            case "lost": return `connection lost, ${this.#nextAttempt()}`;
            default: return "closed";
        }
    }

    /** Begins to attach, and goes on trying until close(). Has no effect once begun. Throws what WebSocket throws. */
    open() {
        if (this.#state !== "closed") return;
        this.#failures = 0;
        this.#connect();
    }

    /** Ends a pause: the next attempt begins at once. Has no effect in other states. */
    retryNow() {
        if (this.#retryAt !== undefined) this.#connect();
    }

    /** Sends one text. Resolves with the echo; rejects with an OrvuPushError. */
    async send(text) {
        this.#check(text);
        return new Promise((resolve, reject) => {
            this.#socket.send(text);
            this.#texts.push({ text, resolve, reject, sentAt: this.#options.clock.now() });
            if (this.#texts.length === 1) this.#awaitEcho();
        });
    }

    /** Detaches and stays so until open() is called again. Texts without an echo are rejected. */
    close() {
        if (this.#state === "closed") return;
        this.#leaveSocket()?.close();
        this.#enter("closed");
    }

    #connect() {
        const Socket = this.#options.WebSocket ?? globalThis.WebSocket;
        try {
            this.#socket = new Socket(this.#url);
        } catch (error) {
            this.close();
            throw error;
        }
        this.#listenTo(this.#socket);
        this.#enter("connecting");
    }

    #listenTo(socket) {
        socket.binaryType = "arraybuffer";
        socket.onopen = () => {
            this.#failures = 0;
            this.#enter("attached");
        };
        socket.onmessage = (event) => this.#receive(event.data);
        socket.onclose = () => this.#fail();
    }

    // From here on nothing of the socket is heard: a late event cannot disturb the next connection.
    #leaveSocket() {
        const socket = this.#socket;
        this.#socket = null;
        if (socket) socket.onopen = socket.onmessage = socket.onclose = null;
        return socket;
    }

    #fail() {
        this.#leaveSocket().close();
        this.#enter(this.#state === "attached" ? "lost" : "refused-or-unreachable");
    }

    // Listeners may call any method: everything is in its place before they hear of the state.
    #enter(state) {
        const texts = this.#texts.splice(0);
        this.#state = state;
        this.#retryAt = undefined;
        this.#wait();
        for (const { reject } of texts) reject(new OrvuPushError("lost", "The connection ended before the echo came."));
        this.dispatchEvent(new OrvuStateEvent(state, this.description, this.retryInSeconds));
    }

    #wait() {
        const { clock, attemptSeconds } = this.#options;
        clock.clearTimeout(this.#timer);
        if (this.#state === "connecting") this.#after(attemptSeconds, () => this.#fail());
        if (this.#state !== "lost" && this.#state !== "refused-or-unreachable") return;
        const seconds = this.#nextPauseSeconds();
        this.#retryAt = clock.now() + seconds * 1000;
        this.#after(seconds, () => this.#connect());
    }

    #after(seconds, action) {
        this.#timer = this.#options.clock.setTimeout(action, seconds * 1000);
    }

    // Up to a quarter is left out at random, so that the pages of a restarted receiver do not come back all at once.
    #nextPauseSeconds() {
        const { firstPauseSeconds, longestPauseSeconds, random } = this.#options;
        const seconds = Math.min(longestPauseSeconds, firstPauseSeconds * 2 ** this.#failures);
        this.#failures += 1;
        return seconds * (1 - random() / 4);
    }

    #nextAttempt() {
        return `trying again in ${Math.ceil(this.retryInSeconds)} s`;
    }

    #receive(data) {
        if (typeof data === "string") this.#receiveEcho(data);
        else this.dispatchEvent(new OrvuMessageEvent(new Uint8Array(data), new Date(this.#options.clock.now())));
    }

    // The server leaves an echo out when there is no room for it. Those that do come keep their order.
    #receiveEcho(text) {
        const leftOut = Math.max(0, this.#texts.findIndex((sent) => sent.text === text));
        const unheard = this.#texts.splice(0, leftOut);
        const first = this.#texts.shift();
        this.#options.clock.clearTimeout(this.#timer);
        if (this.#texts.length > 0) this.#awaitEcho();
        for (const { reject } of unheard) reject(new OrvuPushError("lost", "The server left the echo out."));
        first?.resolve(text);
        this.dispatchEvent(new OrvuEchoEvent(text));
    }

    // An echo that does not come is the only sign of a receiver that vanished, for example by a power cut.
    #awaitEcho() {
        const { clock, echoSeconds } = this.#options;
        const waited = (clock.now() - this.#texts[0].sentAt) / 1000;
        this.#after(Math.max(0, echoSeconds - waited), () => this.#fail());
    }

    #check(text) {
        const { queueLimit } = this.#options;
        if (typeof text !== "string") throw new TypeError("Only a text can be sent.");
        if (text === "") throw new OrvuPushError("empty", "An empty text would have no echo.");
        if (bytesLeft(text) < 0) {
            throw new OrvuPushError("too-long", `The text is ${-bytesLeft(text)} bytes longer than the server takes.`);
        }
        if (this.#state !== "attached") throw new OrvuPushError("not-attached", "There is no connection to send on.");
        if (this.#texts.length >= queueLimit) {
            throw new OrvuPushError("queue-full", `${queueLimit} texts are waiting for their echoes.`);
        }
    }
}

function parsed(text) {
    try {
        return JSON.parse(text);
    } catch {
        return undefined;
    }
}
