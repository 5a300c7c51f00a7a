import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { beforeEach, describe, it } from "node:test";

import * as orvuPush from "../../examples/browser/orvu-push.js";
import { FakeClock, fakeWebSocket } from "./fakes.js";

const { OrvuPush, bytesLeft } = orvuPush;

let clock;
let Socket;
let heard;

function aPush(options = {}) {
    const push = new OrvuPush("ws://receiver:1", { clock, WebSocket: Socket, random: () => 0, ...options });
    for (const type of ["state", "message", "echo"]) push.addEventListener(type, (event) => heard.push(event));
    return push;
}

function anOpenPush(options) {
    const push = aPush(options);
    push.open();
    return push;
}

function anAttachedPush(options) {
    const push = anOpenPush(options);
    Socket.last.accept();
    return push;
}

const states = () => heard.filter(({ type }) => type === "state").map(({ state }) => state);
const messages = () => heard.filter(({ type }) => type === "message");

beforeEach(() => {
    clock = new FakeClock();
    Socket = fakeWebSocket();
    heard = [];
});

describe("A push connection", () => {
    it("is closed until it is opened", () => {
        const push = aPush();
        assert.equal(push.state, "closed");
        assert.equal(push.description, "closed");
        assert.equal(push.url, "ws://receiver:1");
        assert.equal(Socket.made.length, 0);
    });

    it("tells that it connects, then that it is attached", () => {
        const push = anOpenPush();
        assert.equal(Socket.last.url, "ws://receiver:1");
        assert.equal(push.state, "connecting");
        Socket.last.accept();
        assert.equal(push.state, "attached");
        assert.equal(push.description, "attached");
        assert.equal(push.retryInSeconds, undefined);
        assert.deepEqual(states(), ["connecting", "attached"]);
    });

    it("makes one connection however often it is opened", () => {
        const push = anOpenPush();
        push.open();
        Socket.last.accept();
        push.open();
        assert.equal(Socket.made.length, 1);
    });

    it("throws what the browser says of an address that is none, and stays closed", () => {
        const push = new OrvuPush("receiver", { clock, WebSocket: Socket });
        assert.throws(() => push.open(), SyntaxError);
        assert.equal(push.state, "closed");
        assert.equal(clock.waiting, 0);
    });

    it("calls a connection that ends before it opened refused or unreachable", () => {
        const push = anOpenPush();
        Socket.last.end();
        assert.equal(push.state, "refused-or-unreachable");
        assert.equal(push.description, "refused or unreachable, trying again in 1 s");
        assert.equal(heard.at(-1).description, "refused or unreachable, trying again in 1 s");
        assert.equal(heard.at(-1).retryInSeconds, 1);
    });

    it("calls a connection that ends after it opened lost", () => {
        const push = anAttachedPush();
        Socket.last.end();
        assert.equal(push.state, "lost");
        assert.equal(push.description, "connection lost, trying again in 1 s");
    });

    it("gives an attempt ten seconds", () => {
        const push = anOpenPush();
        clock.advance(9.9);
        assert.equal(push.state, "connecting");
        clock.advance(0.1);
        assert.equal(push.state, "refused-or-unreachable");
        assert.equal(Socket.last.closeCalls, 1);
    });

    it("stays attached for as long as the server keeps silent", () => {
        const push = anAttachedPush();
        clock.advance(7 * 24 * 3600);
        assert.equal(push.state, "attached");
        assert.equal(clock.waiting, 0);
    });
});

describe("A push connection that failed", () => {
    it("tries again when the pause is over", () => {
        const push = anOpenPush();
        Socket.last.end();
        clock.advance(0.9);
        assert.equal(Socket.made.length, 1);
        clock.advance(0.1);
        assert.equal(Socket.made.length, 2);
        assert.equal(push.state, "connecting");
        assert.equal(push.retryInSeconds, undefined);
    });

    it("doubles its pauses up to thirty seconds", () => {
        anOpenPush();
        const pauses = [];
        for (let i = 0; i < 7; ++i) {
            Socket.last.end();
            pauses.push(heard.at(-1).retryInSeconds);
            clock.advance(pauses.at(-1));
        }
        assert.deepEqual(pauses, [1, 2, 4, 8, 16, 30, 30]);
    });

    it("goes on for ever", () => {
        anOpenPush();
        for (let i = 0; i < 5000; ++i) {
            Socket.last.end();
            clock.advance(heard.at(-1).retryInSeconds);
        }
        assert.equal(Socket.made.length, 5001);
        assert.equal(clock.waiting, 1);
    });

    it("shortens each pause by up to a quarter at random", () => {
        anOpenPush({ random: () => 0.8 });
        Socket.last.end();
        assert.equal(heard.at(-1).retryInSeconds, 0.8);
    });

    it("pauses as its options say", () => {
        anOpenPush({ firstPauseSeconds: 3, longestPauseSeconds: 5 });
        Socket.last.end();
        assert.equal(heard.at(-1).retryInSeconds, 3);
        clock.advance(3);
        Socket.last.end();
        assert.equal(heard.at(-1).retryInSeconds, 5);
    });

    it("counts the pause down", () => {
        const push = anOpenPush({ firstPauseSeconds: 4 });
        Socket.last.end();
        clock.advance(2.5);
        assert.equal(push.retryInSeconds, 1.5);
        assert.equal(push.description, "refused or unreachable, trying again in 2 s");
    });

    it("begins with the first pause again after it was attached", () => {
        anOpenPush();
        for (const pause of [1, 2, 4]) {
            Socket.last.end();
            clock.advance(pause);
        }
        Socket.last.accept();
        Socket.last.end();
        assert.equal(heard.at(-1).retryInSeconds, 1);
    });

    it("tries at once when asked to, and only once", () => {
        const push = anOpenPush();
        Socket.last.end();
        push.retryNow();
        assert.equal(push.state, "connecting");
        push.retryNow();
        clock.advance(9);
        assert.equal(Socket.made.length, 2);
    });

    it("closes when the browser does not let it try again", () => {
        let allowed = true;
        const WebSocket = class extends Socket {
            constructor(url) {
                if (!allowed) throw new Error("not allowed any more");
                super(url);
            }
        };
        const push = anOpenPush({ WebSocket });
        Socket.last.end();
        allowed = false;
        assert.throws(() => clock.advance(1), /not allowed any more/);
        assert.equal(push.state, "closed");
        assert.equal(heard.at(-1).state, "closed");
        assert.equal(clock.waiting, 0);
    });

    it("ignores what the connection before still says", () => {
        const push = anOpenPush();
        const first = Socket.last;
        clock.advance(11);
        assert.equal(Socket.made.length, 2);
        first.accept();
        first.push("late");
        first.end();
        assert.equal(push.state, "connecting");
        assert.deepEqual(states(), ["connecting", "refused-or-unreachable", "connecting"]);
        assert.deepEqual(messages(), []);
    });
});

describe("A closed push connection", () => {
    it("is closed at once and tells so", () => {
        const push = anAttachedPush();
        push.close();
        assert.equal(push.state, "closed");
        assert.equal(Socket.last.closeCalls, 1);
        assert.deepEqual(states(), ["connecting", "attached", "closed"]);
    });

    for (const [from, prepare] of [
        ["connecting", anOpenPush],
        ["attached", anAttachedPush],
        ["refused-or-unreachable", () => { const push = anOpenPush(); Socket.last.end(); return push; }],
        ["lost", () => { const push = anAttachedPush(); Socket.last.end(); return push; }],
    ]) {
        it(`does not try again, closed while ${from}`, () => {
            const push = prepare();
            assert.equal(push.state, from);
            push.close();
            Socket.last.end();
            push.retryNow();
            clock.advance(3600);
            assert.equal(push.state, "closed");
            assert.equal(heard.at(-1).state, "closed");
            assert.equal(Socket.made.length, 1);
            assert.equal(clock.waiting, 0);
        });
    }

    it("tells nothing when it is closed again", () => {
        const push = anOpenPush();
        push.close();
        push.close();
        assert.deepEqual(states(), ["connecting", "closed"]);
    });

    it("can be opened again", () => {
        const push = anOpenPush();
        Socket.last.end();
        clock.advance(1);
        push.close();
        push.open();
        assert.equal(Socket.made.length, 3);
        Socket.last.end();
        assert.equal(heard.at(-1).retryInSeconds, 1);
    });

    it("may be closed by who hears of its state", () => {
        const push = aPush();
        push.addEventListener("state", ({ state }) => state === "refused-or-unreachable" && push.close());
        push.open();
        Socket.last.end();
        assert.equal(push.state, "closed");
        clock.advance(3600);
        assert.equal(Socket.made.length, 1);
    });
});

describe("A pushed message", () => {
    const text = '{\n\t"HEADER":\t"currentService",\n\t"serviceName":\t"Televisão"\n}';

    it("arrives as text, as parsed JSON, with its type, size and time", () => {
        anAttachedPush();
        assert.equal(Socket.last.binaryType, "arraybuffer");
        clock.advance(5);
        Socket.last.push(text);
        const [message] = messages();
        assert.equal(message.text, text);
        assert.deepEqual(message.json, { HEADER: "currentService", serviceName: "Televisão" });
        assert.equal(message.header, "currentService");
        assert.equal(message.size, 61);
        assert.equal(message.bytes.length, 61);
        assert.equal(message.time.toISOString(), "2024-01-01T00:00:05.000Z");
    });

    it("keeps the order in which it was pushed", () => {
        anAttachedPush();
        for (const number of [1, 2, 3]) Socket.last.push(String(number));
        assert.deepEqual(messages().map(({ json }) => json), [1, 2, 3]);
    });

    it("has no JSON when it is none", () => {
        anAttachedPush();
        Socket.last.push("hello");
        assert.equal(messages()[0].text, "hello");
        assert.equal(messages()[0].json, undefined);
        assert.equal(messages()[0].header, undefined);
    });

    it("is empty when nothing was in it", () => {
        anAttachedPush();
        Socket.last.push("");
        assert.equal(messages()[0].size, 0);
        assert.equal(messages()[0].text, "");
        assert.equal(messages()[0].json, undefined);
    });

    for (const json of ["null", "[1]", '"HEADER"', "{}", '{"HEADER": 7}']) {
        it(`has no type when it is ${json}`, () => {
            anAttachedPush();
            Socket.last.push(json);
            assert.deepEqual(messages()[0].json, JSON.parse(json));
            assert.equal(messages()[0].header, undefined);
        });
    }

    it("keeps bytes that are no UTF-8", () => {
        anAttachedPush();
        Socket.last.push(Uint8Array.of(0x61, 0xff, 0x62));
        assert.equal(messages()[0].text, "a\ufffdb");
        assert.deepEqual([...messages()[0].bytes], [0x61, 0xff, 0x62]);
    });
});

describe("The interface's types", () => {
    const types = readFileSync(new URL("../../examples/browser/orvu-push.d.ts", import.meta.url), "utf8");

    it("name all that the module exports", () => {
        for (const name of Object.keys(orvuPush)) assert.match(types, new RegExp(`export (class|function) ${name}\\b`));
    });

    it("name all that a connection offers", () => {
        const names = Object.getOwnPropertyNames(OrvuPush.prototype);
        for (const name of names) assert.match(types, new RegExp(`\\b${name}[(:]`));
    });

    it("name every code of an error", () => {
        const source = readFileSync(new URL("../../examples/browser/orvu-push.js", import.meta.url), "utf8");
        const codes = [...source.matchAll(/new OrvuPushError\("([a-z-]+)"/g)].map(([, code]) => code);
        assert.deepEqual([...new Set(codes)].sort(), ["empty", "lost", "not-attached", "queue-full", "too-long"]);
        for (const code of codes) assert.match(types, new RegExp(`\\| "${code}"`));
    });
});

describe("The room after a text", () => {
    for (const [count, letter, bytes] of [[0, "a", 65536], [1, "a", 65535], [63, "ã", 65410], [65536, "a", 0],
        [32768, "ã", 0], [65537, "a", -1], [16384, "😀", 0], [16385, "😀", -4]]) {
        const text = letter.repeat(count);
        it(`is ${bytes} bytes for ${count} × "${letter}"`, () => assert.equal(bytesLeft(text), bytes));
    }
});
