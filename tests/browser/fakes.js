/** A clock that moves when told. */
export class FakeClock {
    #milliseconds = Date.UTC(2024, 0, 1);
    #timers = [];

    now() {
        return this.#milliseconds;
    }

    setTimeout(callback, milliseconds) {
        const timer = { due: this.#milliseconds + milliseconds, callback };
        this.#timers.push(timer);
        return timer;
    }

    clearTimeout(timer) {
        this.#timers = this.#timers.filter((other) => other !== timer);
    }

    /** How many timers are set. */
    get waiting() {
        return this.#timers.length;
    }

    advance(seconds) {
        const end = this.#milliseconds + seconds * 1000;
        for (let timer = this.#nextUntil(end); timer; timer = this.#nextUntil(end)) {
            this.#milliseconds = timer.due;
            this.clearTimeout(timer);
            timer.callback();
        }
        this.#milliseconds = end;
    }

    #nextUntil(end) {
        return this.#timers.filter(({ due }) => due <= end).sort((a, b) => a.due - b.due)[0];
    }
}

/** Makes a class that stands in for WebSocket and keeps its objects in `made`. The test plays the server. */
export function fakeWebSocket() {
    return class FakeWebSocket {
        static made = [];
        static get last() {
            return this.made[this.made.length - 1];
        }

        binaryType = "blob";
        sent = [];
        closeCalls = 0;
        onopen = null;
        onmessage = null;
        onclose = null;

        constructor(url) {
            if (!url.startsWith("ws")) throw new SyntaxError(`no WebSocket URL: ${url}`);
            this.url = url;
            FakeWebSocket.made.push(this);
        }

        send(text) {
            this.sent.push(text);
        }

        close() {
            this.closeCalls += 1;
        }

        accept() {
            this.onopen?.({});
        }

        end() {
            this.onclose?.({ code: 1006 });
        }

        push(bytes) {
            const data = typeof bytes === "string" ? new TextEncoder().encode(bytes) : bytes;
            this.onmessage?.({ data: data.buffer.slice(data.byteOffset, data.byteOffset + data.byteLength) });
        }

        echo(text = this.sent[this.sent.length - 1]) {
            this.onmessage?.({ data: text });
        }
    };
}
