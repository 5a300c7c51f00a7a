import assert from "node:assert/strict";
import { describe, it } from "node:test";

import { body, complaints, focused, kTelephone, kTelevision, message, page, press, reopenOn, server, site }
    from "./stage.js";
import { examples, untilState } from "./support.js";

describe("A pushed message on the page", () => {
    it("appears with its name, type, number, size, time and content", async () => {
        await server.push('{"HEADER":"currentService","serviceName":"Televisão","serviceId":7,"free":true}');
        await body(0).locator(".key").nth(3).waitFor();
        assert.equal(await message(0).locator(".kind").innerText(), "currentService");
        assert.equal(await message(0).locator(".name").innerText(), "Televisão");
        assert.equal(await message(0).locator(".number").innerText(), "#1");
        assert.equal(await message(0).locator(".size").innerText(), "80 bytes");
        assert.match(await message(0).locator("time").innerText(), /^\d\d:\d\d:\d\d\.\d\d\d$/);
        assert.ok(Math.abs(Date.parse(await message(0).locator("time").getAttribute("datetime")) - Date.now()) < 60000);
        assert.equal(await body(0).innerText(),
            '{\n  "HEADER": "currentService",\n  "serviceName": "Televisão",\n  "serviceId": 7,\n  "free": true\n}');
        assert.equal(await page.locator("#news").textContent(), "New message: currentService, 80 bytes");
    });

    it("stands above those before it, open, while they fold", async () => {
        for (const header of ["first", "second", "third"]) await server.push({ HEADER: header, a: [1, 2] });
        await message(2).waitFor();
        assert.deepEqual(await page.locator("#messages .kind").allInnerTexts(), ["third", "second", "first"]);
        await body(0).filter({ hasText: "third" }).waitFor();
        assert.equal(await page.locator("#messages details[open]").count(), 1);
        assert.equal(await message(1).locator(".preview").innerText(), '{"a":[1,2]}');
        assert.equal(await page.locator("#count").innerText(), "3 received");
    });

    it("that the reader opened stays open", async () => {
        await server.push({ HEADER: "first" });
        await server.push({ HEADER: "second" });
        await message(1).locator("summary").click();
        await body(1).filter({ hasText: "first" }).waitFor();
        await server.push({ HEADER: "third" });
        await message(2).waitFor();
        assert.deepEqual(await page.locator("#messages details[open] .kind").allInnerTexts(), ["third", "first"]);
    });

    it("may be no JSON, and is never taken for markup", async () => {
        await server.push("<img src=x onerror=alert(1)> <b>no JSON</b>");
        await body(0).filter({ hasText: "<b>no JSON</b>" }).waitFor();
        assert.equal(await message(0).locator(".kind").innerText(), "text");
        await server.push('{"HEADER":"<i>x</i>","a":"<b>y</b>"}');
        await body(0).filter({ hasText: '"<b>y</b>"' }).waitFor();
        assert.equal(await page.locator("#messages :is(img, b, i)").count(), 0);
    });

    it("is shown up to 20,000 characters", async () => {
        await server.push(`"${"a".repeat(30000)}"`);
        await body(0).filter({ hasText: "10002 more characters" }).waitFor();
    });

    it("is one of the last 200", async () => {
        for (let number = 1; number <= 203; ++number) await server.push(String(number));
        await body(0).filter({ hasText: "203" }).waitFor();
        assert.equal(await page.locator("#messages li").count(), 200);
        assert.equal(await page.locator("#count").innerText(), "203 received, the last 200 shown");
        await page.getByRole("button", { name: "Clear" }).click();
        assert.equal(await page.locator("#messages li").count(), 0);
        assert.ok(await page.locator("#empty").isVisible());
    });
});

describe("A text sent from the page", () => {
    it("is echoed", async () => {
        await page.getByLabel("Text to send").fill("Olá, receptor");
        await page.getByRole("button", { name: "Send" }).click();
        await page.locator("#echo", { hasText: "Echoed: Olá, receptor" }).waitFor();
        assert.equal(await page.getByLabel("Text to send").inputValue(), "");
        assert.equal(await page.locator("#messages li").count(), 0);
    });

    it("cannot be sent while it is longer than the server takes", async () => {
        const send = page.getByRole("button", { name: "Send" });
        assert.ok(await send.isDisabled());
        await page.getByLabel("Text to send").fill("a".repeat(65536));
        assert.equal(await page.locator("#room").innerText(), "Room for 0 more bytes");
        assert.ok(await send.isEnabled());
        await page.getByLabel("Text to send").fill("a".repeat(65535) + "ã");
        assert.equal(await page.locator("#room").innerText(), "1 bytes too long");
        assert.ok(await send.isDisabled());
    });
});

describe("The module in a browser", () => {
    /** Runs `use` in the page with a second connection of its own, attached; the page's is closed before. */
    async function withModule(use, argument) {
        await page.getByRole("button", { name: "Detach" }).click();
        const program = `async ({ port, argument }) => {
            const { OrvuPush } = await import("/orvu-push.js");
            const push = new OrvuPush("ws://127.0.0.1:" + port, { firstPauseSeconds: 0.05 });
            const until = (type, test) => new Promise((resolve) => {
                push.addEventListener(type, (event) => test(event) && resolve(event));
            });
            const attached = until("state", ({ state }) => state === "attached");
            push.open();
            await attached;
            return (${use})({ push, until, argument });
        }`;
        return page.evaluate(`(${program})(${JSON.stringify({ port: server.port, argument })})`);
    }

    it("sends texts in a hurry, and refuses the one too many", async () => {
        const texts = Array.from({ length: 17 }, (_, number) => `text ${number}`);
        const results = await withModule(async ({ push, argument }) => {
            const sent = argument.map((text) => push.send(text).catch(({ code }) => code));
            return Promise.all(sent);
        }, texts);
        assert.deepEqual(results, [...texts.slice(0, 16), "queue-full"]);
    });

    it("has texts of every length echoed whole", async () => {
        const lengths = [1, 125, 126, 127, 2048, 8192, 16384, 65535, 65536];
        const echoed = await withModule(async ({ push, argument }) => {
            const results = [];
            for (const length of argument) results.push((await push.send("x".repeat(length))).length);
            return results;
        }, lengths);
        assert.deepEqual(echoed, lengths);
    });

    it("has the longest texts in a hurry echoed whole", async () => {
        const results = await withModule(async ({ push }) => {
            const texts = Array.from({ length: 16 }, (_, number) => String.fromCharCode(97 + number).repeat(65536));
            const sent = texts.map((text) => push.send(text));
            return Promise.all(sent.map(async (echo, number) => (await echo) === texts[number]));
        });
        assert.deepEqual(results, Array(16).fill(true));
    });

    it("receives messages of every length whole and in order", async () => {
        const lengths = [1, 125, 126, 65535, 65536, 300000];
        const received = withModule(async ({ push, until, argument }) => {
            const sizes = [];
            const all = until("message", ({ size, text }) => {
                sizes.push(text === "x".repeat(size) ? size : `${size} wrong`);
                return sizes.length === argument.length;
            });
            await push.send("ready");
            document.title = "listening";
            await all;
            return sizes;
        }, lengths);
        await page.waitForFunction(() => document.title === "listening");
        for (const length of lengths) assert.equal(await server.push("x".repeat(length)), `pushed ${length}`);
        assert.deepEqual(await received, lengths);
    });

    it("gives its place up at once although texts are on their way", async () => {
        const codes = await withModule(async ({ push }) => {
            const sent = ["one", "two"].map((text) => push.send(text).catch(({ code }) => code));
            push.close();
            return Promise.all(sent);
        });
        assert.deepEqual(codes, ["lost", "lost"]);
        await page.locator("#toggle", { hasText: "Attach" }).click();
        await untilState(page, "attached");
    });

    it("closes for good, and can be opened again", async () => {
        const states = await withModule(async ({ push, until }) => {
            const seen = [];
            push.addEventListener("state", ({ state }) => seen.push(state));
            push.close();
            const again = until("state", ({ state }) => state === "attached");
            push.open();
            await again;
            return [seen[0], seen[1], seen.at(-1)];
        });
        assert.deepEqual(states, ["closed", "connecting", "attached"]);
    });
});

describe("The page", () => {
    it("asks for a receiver when its address names none", async () => {
        await page.goto(site.url);
        const { port } = server;
        assert.equal(await page.getByLabel("Host").inputValue(), "127.0.0.1");
        assert.equal(await page.evaluate(() => document.activeElement.name), "port");
        await page.getByLabel("Port").fill(String(port));
        await press("Enter");
        await untilState(page, "attached");
        assert.equal(new URL(page.url()).search, `?host=127.0.0.1&port=${port}`);
        assert.equal(await page.locator("#address").innerText(), `ws://127.0.0.1:${port}`);
    });

    it("says what the browser has against an address", async () => {
        await page.goto(`${site.url}?host=127.0.0.1&port=99999`);
        await page.locator("#detail", { hasText: "The browser does not take this address" }).waitFor();
        assert.ok(await page.getByLabel("Port").isVisible());
    });

    it("opened as a file says what it needs", async () => {
        await page.goto(new URL("index.html", examples).href);
        await page.locator("#no-script", { hasText: "serve this folder" }).waitFor();
        complaints.length = 0;
    });

    for (const [name, screen] of [["television", kTelevision], ["telephone", kTelephone],
        ["small telephone", { ...kTelephone, viewport: { width: 320, height: 640 } }]]) {
        it(`fits the width of a ${name}`, async () => {
            await reopenOn(screen);
            await server.push({ HEADER: "rtkChangeComponentStatus", aKeyWithoutAnyBlank: "x".repeat(500) });
            await body(0).filter({ hasText: "aKeyWithoutAnyBlank" }).waitFor();
            const [content, window] = await page.evaluate(() => [document.documentElement.scrollWidth, innerWidth]);
            assert.equal(content, window);
        });
    }

    it("is read from across the room on a television, and touched on a telephone", async () => {
        const sizes = () => page.evaluate(() => {
            const controls = [...document.querySelectorAll("button, input")];
            const heights = controls.map((one) => one.getBoundingClientRect().height);
            return {
                type: parseFloat(getComputedStyle(document.body).fontSize),
                control: Math.min(...heights.filter((height) => height > 0)),
                columns: getComputedStyle(document.body).gridTemplateColumns.split(" ").length,
            };
        });
        const isAtLeast = ({ type, control }, least) => assert.ok(type >= least.type && control >= least.control);
        const television = await sizes();
        isAtLeast(television, { type: 24, control: 64 });
        assert.equal(television.columns, 2);
        await reopenOn(kTelephone);
        const telephone = await sizes();
        isAtLeast(telephone, { type: 16, control: 44 });
        assert.equal(telephone.columns, 1);
    });

    it("is worked with the keys of a remote control", async () => {
        for (const header of ["first", "second"]) await server.push({ HEADER: header });
        await message(1).waitFor();
        await page.getByRole("button", { name: "Detach" }).focus();
        await press("ArrowRight");
        assert.match(await focused(), /^second/);
        await press("ArrowDown");
        assert.match(await focused(), /^first/);
        await press("Enter");
        await body(1).filter({ hasText: '"first"' }).waitFor();
        await press("ArrowUp", "ArrowUp", "ArrowRight", "ArrowRight");
        assert.equal(await focused(), "Clear");
        await press("Enter");
        await page.locator("#empty").waitFor();
        await press("ArrowLeft");
        assert.equal(await focused(), "Detach");
        await press("Enter");
        await untilState(page, "closed");
    });

    it("scrolls a long message before the focus leaves it", async () => {
        await server.push({ HEADER: "short" });
        await server.push(Array.from({ length: 90 }, (_, number) => number));
        await body(0).filter({ hasText: "89" }).waitFor();
        await message(0).locator("summary").focus();
        await press("ArrowDown");
        assert.match(await focused(), /^JSON/);
        assert.ok((await page.locator("#messages").evaluate((list) => list.scrollTop)) > 0);
        for (let presses = 0; presses < 12 && !/^short/.test(await focused()); ++presses) await press("ArrowDown");
        assert.match(await focused(), /^short/);
        const [box, view] = [await message(1).boundingBox(), page.viewportSize()];
        assert.ok(box.y + box.height <= view.height);
    });

    it("leaves the arrow keys to a text that is being written", async () => {
        const field = page.getByLabel("Text to send");
        await field.fill("ab");
        await press("ArrowLeft", "ArrowLeft");
        assert.ok(await field.evaluate((one) => one === document.activeElement));
        await press("x");
        assert.equal(await field.inputValue(), "xab");
    });
});
