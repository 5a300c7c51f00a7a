import assert from "node:assert/strict";
import { after, afterEach, before, beforeEach, describe, it } from "node:test";

import { PushServer, openAttachedPage, openPage, servePage, startBrowser, untilState } from "./support.js";

let site;
let browser;
let context;
let server;

before(async () => {
    site = await servePage();
    browser = await startBrowser();
});

after(async () => {
    await browser?.kill();
    site?.close();
});

beforeEach(async () => {
    server = await PushServer.start();
    context = await browser.newContext();
});

afterEach(async () => {
    await context.close();
    assert.equal(await server.quit(), 0);
});

/** Keeps the states that the page shows from now on; gives what waits until they end in `last`. */
async function recordStates(page) {
    await page.evaluate(() => {
        const status = document.getElementById("status");
        globalThis.states = [status.dataset.state];
        const watcher = new MutationObserver(() => globalThis.states.push(status.dataset.state));
        watcher.observe(status, { attributeFilter: ["data-state"] });
    });
    return async (last) => {
        await page.waitForFunction((state) => globalThis.states.length > 1 && globalThis.states.at(-1) === state, last);
        return page.evaluate(() => globalThis.states);
    };
}

describe("The one place at a push server", () => {
    it("is the first page's: a second is refused, says so and goes on trying", async () => {
        await openAttachedPage(context, site, server);
        const second = await openPage(context, site, server);
        await untilState(second, "refused-or-unreachable");
        assert.equal(await second.locator("#state").innerText(), "Refused or unreachable");
        assert.match(await second.locator("#said").textContent(), /^refused or unreachable, trying again in \d+ s$/);
        await second.locator("#detail", { hasText: /^Trying again in \d+ s$/ }).waitFor();
        assert.ok(await second.locator("#hint").isVisible());
        const statesUntil = await recordStates(second);
        await second.waitForFunction(() => globalThis.states.length >= 4);
        const states = await statesUntil("refused-or-unreachable");
        assert.deepEqual(states.slice(0, 3), ["refused-or-unreachable", "connecting", "refused-or-unreachable"]);
    });

    it("does not lose its page to one that is refused", async () => {
        const first = await openAttachedPage(context, site, server);
        await untilState(await openPage(context, site, server), "refused-or-unreachable");
        assert.equal(await server.push("for the first"), "pushed 13");
        await first.locator("#messages .body", { hasText: "for the first" }).waitFor();
    });

    it("goes to the second page when the first is closed", async () => {
        const first = await openAttachedPage(context, site, server);
        const second = await openPage(context, site, server);
        await untilState(second, "refused-or-unreachable");
        await first.close();
        await untilState(second, "attached");
        assert.equal(await server.push("for the second"), "pushed 14");
        await second.locator("#messages .body", { hasText: "for the second" }).waitFor();
    });

    it("is a page's again at its first attempt when it is reloaded", async () => {
        await context.addInitScript(() => {
            globalThis.attempts = 0;
            globalThis.WebSocket = class extends globalThis.WebSocket {
                constructor(url) {
                    super(url);
                    globalThis.attempts += 1;
                }
            };
        });
        const page = await openAttachedPage(context, site, server);
        for (let round = 0; round < 20; ++round) {
            await page.reload();
            await untilState(page, "attached");
            assert.equal(await page.evaluate(() => globalThis.attempts), 1);
        }
    });

    it("goes to the second page when the first leaves in the middle of a text", async () => {
        const first = await openAttachedPage(context, site, server);
        const second = await openPage(context, site, server);
        await untilState(second, "refused-or-unreachable");
        await first.getByLabel("Text to send").fill("a".repeat(65536));
        await first.evaluate(() => {
            document.getElementById("send").requestSubmit();
            location.href = "about:blank";
        });
        await untilState(second, "attached");
    });

    it("goes to the second page when the first detaches, which then stays so", async () => {
        const first = await openAttachedPage(context, site, server);
        const second = await openPage(context, site, server);
        await untilState(second, "refused-or-unreachable");
        const statesUntil = await recordStates(first);
        await first.getByRole("button", { name: "Detach" }).click();
        await untilState(second, "attached");
        await second.getByRole("button", { name: "Detach" }).click();
        await untilState(second, "closed");
        assert.deepEqual(await statesUntil("closed"), ["attached", "closed"]);
        await first.locator("#toggle", { hasText: "Attach" }).click();
        await untilState(first, "attached");
    });

    it("is free again when the browser is killed", async () => {
        const doomed = await startBrowser();
        await openAttachedPage(await doomed.newContext(), site, server);
        const second = await openPage(context, site, server);
        await untilState(second, "refused-or-unreachable");
        await doomed.kill();
        await untilState(second, "attached");
    });
});

describe("A page", () => {
    it("survives that its server is restarted", async () => {
        const page = await openAttachedPage(context, site, server);
        const statesUntil = await recordStates(page);
        assert.equal(await server.restart(), `listening ${server.port}`);
        assert.deepEqual(await statesUntil("attached"), ["attached", "lost", "connecting", "attached"]);
        assert.equal(await server.push("after the restart"), "pushed 17");
        await page.locator("#messages .body", { hasText: "after the restart" }).waitFor();
    });

    it("keeps its messages and waits while its server is away", async () => {
        const page = await openAttachedPage(context, site, server);
        await server.push("before");
        await page.locator("#messages .body", { hasText: "before" }).waitFor();
        const statesUntil = await recordStates(page);
        assert.equal(await server.tell("stop"), "stopped");
        await untilState(page, "lost");
        await untilState(page, "refused-or-unreachable");
        assert.equal(await server.tell("start"), `listening ${server.port}`);
        const states = await statesUntil("attached");
        assert.deepEqual(states.slice(0, 4), ["attached", "lost", "connecting", "refused-or-unreachable"]);
        assert.equal(await page.locator("#messages li").count(), 1);
    });

    it("that was there first attaches when the server comes", async () => {
        assert.equal(await server.tell("stop"), "stopped");
        const page = await openPage(context, site, server);
        await untilState(page, "refused-or-unreachable");
        await server.tell("start");
        await untilState(page, "attached");
    });

    it("tries at once when asked to", async () => {
        await server.tell("stop");
        // No pause of it ever ends by itself.
        await context.addInitScript(() => {
            const { setTimeout } = globalThis;
            globalThis.setTimeout = (callback, time) => (time >= 500 ? 0 : setTimeout(callback, time));
        });
        const page = await openPage(context, site, server);
        await untilState(page, "refused-or-unreachable");
        await server.tell("start");
        await page.getByRole("button", { name: "Try now" }).click();
        await untilState(page, "attached");
    });

    it("stops trying when told to", async () => {
        await server.tell("stop");
        const page = await openPage(context, site, server);
        await untilState(page, "refused-or-unreachable");
        await page.getByRole("button", { name: "Stop trying" }).click();
        await untilState(page, "closed");
        await server.tell("start");
        assert.equal(await server.push("nobody is there"), "not pushed");
        assert.equal(await page.locator("#status").getAttribute("data-state"), "closed");
    });
});
