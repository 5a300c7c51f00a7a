import assert from "node:assert/strict";
import { beforeEach, describe, it } from "node:test";

import { OrvuPush, OrvuPushError } from "../../examples/browser/orvu-push.js";
import { FakeClock, fakeWebSocket } from "./fakes.js";

let clock;
let Socket;
let push;

const failsWith = (code) => (error) => error instanceof OrvuPushError && error.code === code;

beforeEach(() => {
    clock = new FakeClock();
    Socket = fakeWebSocket();
    push = new OrvuPush("ws://receiver:1", { clock, WebSocket: Socket, random: () => 0, queueLimit: 3 });
    push.open();
    Socket.last.accept();
});

describe("A sent text", () => {
    it("goes out as it is and resolves with its echo", async () => {
        const sent = push.send("olá");
        assert.deepEqual(Socket.last.sent, ["olá"]);
        Socket.last.echo();
        assert.equal(await sent, "olá");
    });

    it("is told of as an echo, not as a message", async () => {
        const heard = [];
        push.addEventListener("echo", ({ text }) => heard.push(text));
        push.addEventListener("message", () => heard.push("a message"));
        push.send("hello");
        Socket.last.echo();
        assert.deepEqual(heard, ["hello"]);
    });

    it("does not wait for the echo of the one before", async () => {
        const texts = ["one", "two", "three"];
        const sent = texts.map((text) => push.send(text));
        assert.deepEqual(Socket.last.sent, texts);
        for (const text of texts) Socket.last.echo(text);
        assert.deepEqual(await Promise.all(sent), texts);
    });

    it("does not take a pushed message for its echo", async () => {
        let echoed = false;
        const sent = push.send("one").then(() => { echoed = true; });
        Socket.last.push("one");
        await Promise.resolve();
        assert.equal(echoed, false);
        Socket.last.echo();
        await sent;
    });

    it("fails when its echo is left out, which does not disturb those after it", async () => {
        const sent = ["one", "two", "three"].map((text) => push.send(text));
        Socket.last.echo("two");
        await assert.rejects(sent[0], failsWith("lost"));
        assert.equal(await sent[1], "two");
        Socket.last.echo("three");
        assert.equal(await sent[2], "three");
        assert.equal(push.state, "attached");
        assert.equal(clock.waiting, 0);
    });

    it("may be the same as the one before", async () => {
        const sent = [push.send("one"), push.send("one")];
        Socket.last.echo();
        Socket.last.echo();
        assert.deepEqual(await Promise.all(sent), ["one", "one"]);
    });

    it("takes an echo of other words for its own when no text has these", async () => {
        const sent = push.send("half a pair: \ud83d");
        Socket.last.echo("half a pair: \ufffd");
        assert.equal(await sent, "half a pair: \ufffd");
    });

    it("is refused when as many as may wait are waiting, until an echo has come", async () => {
        const sent = [push.send("1"), push.send("2"), push.send("3")];
        await assert.rejects(push.send("4"), failsWith("queue-full"));
        Socket.last.echo("1");
        sent.push(push.send("5"));
        for (const text of ["2", "3", "5"]) Socket.last.echo(text);
        assert.deepEqual(await Promise.all(sent), ["1", "2", "3", "5"]);
    });

    it("may have 64 kilobytes of UTF-8", async () => {
        for (const text of ["a".repeat(65536), "ã".repeat(32768)]) {
            const sent = push.send(text);
            Socket.last.echo();
            assert.equal(await sent, text);
        }
    });

    for (const [why, text, code] of [
        ["it is too long", "a".repeat(65537), "too-long"],
        ["its UTF-8 is too long", "ã".repeat(32769), "too-long"],
        ["it is empty", "", "empty"],
    ]) {
        it(`is refused when ${why}`, async () => {
            await assert.rejects(push.send(text), failsWith(code));
            assert.deepEqual(Socket.last.sent, []);
        });
    }

    it("is refused when it is not a text", async () => {
        for (const value of [undefined, null, 7, { a: 1 }]) await assert.rejects(push.send(value), TypeError);
        assert.deepEqual(Socket.last.sent, []);
    });

    it("is refused without a connection", async () => {
        Socket.last.end();
        await assert.rejects(push.send("hello"), failsWith("not-attached"));
        push.retryNow();
        await assert.rejects(push.send("hello"), failsWith("not-attached"));
        push.close();
        await assert.rejects(push.send("hello"), failsWith("not-attached"));
    });

    for (const [how, end] of [["is lost", () => Socket.last.end()], ["is closed", () => push.close()]]) {
        it(`fails when the connection ${how} before its echo, and those after it`, async () => {
            const sent = [push.send("one"), push.send("two")];
            end();
            for (const text of sent) await assert.rejects(text, failsWith("lost"));
            assert.equal(Socket.last.closeCalls, 1);
            assert.equal(clock.waiting, push.state === "closed" ? 0 : 1);
        });
    }

    it("is not sent again on the next connection", async () => {
        const sent = push.send("one");
        Socket.last.end();
        await assert.rejects(sent, failsWith("lost"));
        clock.advance(1);
        Socket.last.accept();
        assert.deepEqual(Socket.last.sent, []);
        const next = push.send("two");
        Socket.last.echo();
        assert.equal(await next, "two");
    });

    it("whose echo stays away for ten seconds shows that the connection is lost", async () => {
        const sent = push.send("one");
        clock.advance(9.9);
        assert.equal(push.state, "attached");
        clock.advance(0.1);
        assert.equal(push.state, "lost");
        assert.equal(Socket.last.closeCalls, 1);
        await assert.rejects(sent, failsWith("lost"));
    });

    it("has the ten seconds from its own sending", () => {
        push.send("one");
        clock.advance(5);
        push.send("two").catch(() => {});
        clock.advance(4);
        Socket.last.echo("one");
        clock.advance(5.9);
        assert.equal(push.state, "attached");
        clock.advance(0.1);
        assert.equal(push.state, "lost");
    });

    it("leaves no timer behind once it is echoed", () => {
        push.send("one");
        Socket.last.echo();
        assert.equal(clock.waiting, 0);
    });

    it("may be sent by who hears an echo", async () => {
        push.addEventListener("echo", ({ text }) => text === "ping" && push.send("pong"));
        push.send("ping");
        Socket.last.echo();
        assert.deepEqual(Socket.last.sent, ["ping", "pong"]);
    });
});
