import assert from "node:assert/strict";
import { describe, it } from "node:test";

import { body, context, focused, kTelephone, kTelevision, message, page, press, reopenOn, server, site }
    from "./stage.js";
import { openPage, untilState } from "./support.js";

const kSmall = { ...kTelephone, viewport: { width: 360, height: 740 } };

const button = (name) => page.getByRole("button", { name, exact: true });
const words = (id) => page.locator(`#${id}`).innerText();
const shownKinds = () => page.locator("#messages li:visible .kind").allInnerTexts();
const untilNewer = (count) => page.locator("#newer:visible", { hasText: `${count} newer` }).waitFor();
const untilReceived = (count) => page.locator("#count", { hasText: `${count} received` }).waitFor();

async function push(...headers) {
    for (const header of headers) await server.push({ HEADER: header });
}

describe("An empty list", () => {
    const isEmptyBecause = (text) => page.locator("#empty:visible", { hasText: text }).waitFor();

    it("says that nothing has been pushed yet, or that it was cleared", async () => {
        await isEmptyBecause("Attached, but the receiver has pushed nothing yet.");
        await push("first");
        await message(0).waitFor();
        await button("Clear").click();
        await isEmptyBecause("You cleared the list. What the receiver pushes next appears here.");
    });

    it("says that the page was detached", async () => {
        await button("Detach").click();
        await isEmptyBecause("This page is detached: what the receiver pushes does not arrive here.");
    });

    it("says that no receiver was chosen", async () => {
        await page.goto(site.url);
        await isEmptyBecause("Not attached: choose a receiver to see what it pushes.");
    });

    it("says that the receiver refuses the page or cannot be reached, and that the connection was lost", async () => {
        const second = await openPage(context, site, server);
        await second.locator("#empty", { hasText: "the receiver refuses this page, or cannot be reached" }).waitFor();
        await page.evaluate(() => {
            globalThis.reasons = [];
            const keep = () => globalThis.reasons.push(document.getElementById("empty").textContent);
            new MutationObserver(keep).observe(document.getElementById("empty"), { childList: true });
        });
        await server.tell("stop");
        await page.waitForFunction(() => globalThis.reasons.length > 0);
        assert.equal((await page.evaluate(() => globalThis.reasons))[0], "Nothing can arrive: the connection is lost.");
    });
});

describe("Messages of many types", () => {
    it("can be filtered by one of them, with what comes later, too", async () => {
        await push("one", "two", "one");
        await untilReceived(3);
        await button("Type: all").click();
        assert.deepEqual(await page.locator("#types button").allInnerTexts(), ["All types", "one", "two"]);
        await button("one").click();
        assert.deepEqual(await shownKinds(), ["one", "one"]);
        assert.equal(await words("count"), "3 received, 2 shown");
        assert.equal(await focused(), "Type: one");
        await push("two", "one");
        await untilReceived(5);
        assert.deepEqual(await shownKinds(), ["one", "one", "one"]);
        await body(0).filter({ hasText: '"one"' }).waitFor();
        assert.equal(await page.locator("#messages details[open]").count(), 1);
        await button("Type: one").click();
        await button("All types").click();
        assert.deepEqual(await shownKinds(), ["one", "two", "one", "two", "one"]);
    });

    it("may all be of another type than the one that was chosen", async () => {
        await push("one");
        await untilReceived(1);
        await button("Type: all").click();
        await button("one").click();
        await push(...Array(200).fill("two"));
        await page.locator("#empty:visible", { hasText: "No message of the type one is left." }).waitFor();
        assert.equal(await words("count"), "201 received, 0 shown");
    });

    it("are offered when they have no type, too", async () => {
        await server.push("no JSON");
        await server.push("[1]");
        await untilReceived(2);
        await button("Type: all").click();
        await button("JSON").click();
        assert.deepEqual(await shownKinds(), ["JSON"]);
    });
});

describe("A pause", () => {
    it("keeps the list as it is and counts what comes", async () => {
        await push("before");
        await untilReceived(1);
        await button("Pause").click();
        await push("first", "second");
        await untilNewer(2);
        assert.deepEqual(await shownKinds(), ["before"]);
        assert.equal(await words("count"), "Paused: 3 received, 1 shown");
        await button("Go on").click();
        assert.deepEqual(await shownKinds(), ["second", "first", "before"]);
        assert.ok(await page.locator("#newer").isHidden());
        assert.equal(await words("count"), "3 received");
    });

    it("goes on when the newer messages are shown", async () => {
        await push("before");
        await untilReceived(1);
        await button("Pause").click();
        await push("first");
        await untilNewer(1);
        await button("1 newer").click();
        assert.deepEqual(await shownKinds(), ["first", "before"]);
        assert.match(await focused(), /^first/);
        await push("second");
        await untilNewer(1);
        assert.deepEqual(await shownKinds(), ["first", "before"]);
    });

    it("says so when the list was cleared meanwhile", async () => {
        await push("before");
        await untilReceived(1);
        await button("Pause").click();
        await button("Clear").click();
        await push("first");
        await untilNewer(1);
        assert.equal(await words("empty"), "Paused. What came since then is not shown yet.");
        await button("Go on").click();
        assert.deepEqual(await shownKinds(), ["first"]);
    });

    it("keeps the last 200", async () => {
        await push("before");
        await untilReceived(1);
        await button("Pause").click();
        for (let number = 1; number <= 201; ++number) await server.push(String(number));
        await untilNewer(200);
        await button("Go on").click();
        assert.equal(await page.locator("#messages li").count(), 200);
        assert.equal(await message(199).locator(".number").innerText(), "#3");
        assert.equal(await words("count"), "202 received, the last 200 shown");
    });
});

describe("A message", () => {
    const text = '{"HEADER": "serviceTime",  "time":"20:30 – não"}';

    async function copied() {
        await server.push(text);
        await button("Copy").click();
        await button("Copied").waitFor();
        await page.getByLabel("Text to send").focus();
        await press("Control+V");
        return page.getByLabel("Text to send").inputValue();
    }

    it("is copied byte for byte", async () => {
        await context.grantPermissions(["clipboard-read", "clipboard-write"]);
        assert.equal(await copied(), text);
    });

    it("is copied as well where the browser keeps its clipboard from pages of plain http", async () => {
        await page.evaluate(() => Object.defineProperty(navigator, "clipboard", { value: undefined }));
        assert.equal(await copied(), text);
        assert.equal(await page.locator("textarea").count(), 0);
    });

    it("says when it could not be copied", async () => {
        await page.evaluate(() => {
            Object.defineProperty(navigator, "clipboard", { value: undefined });
            document.execCommand = () => false;
        });
        await server.push(text);
        await button("Copy").click();
        await button("Not copied").waitFor();
    });
});

describe("On a telephone of 360 pixels", () => {
    const box = (id) => page.locator(`#${id}`).boundingBox();
    const isInSight = ({ y, height }) => y >= 0 && y + height <= 740;

    it("the state and the count of newer messages stay in sight", async () => {
        await reopenOn(kSmall);
        await push(...Array(30).fill("first"));
        await untilReceived(30);
        await message(20).scrollIntoViewIfNeeded();
        await push("second", "second");
        await untilNewer(2);
        assert.ok(isInSight(await box("newer")));
        assert.ok(isInSight(await box("state-brief")));
        assert.equal(await words("state-brief"), "Attached");
        await server.tell("stop");
        await page.locator("#state-brief", { hasText: /lost|Refused/ }).waitFor();
        assert.ok(isInSight(await box("state-brief")));
        await button("2 newer").click();
        await page.locator("#newer").waitFor({ state: "hidden" });
        assert.ok(isInSight(await message(0).locator(".kind").boundingBox()));
    });

    it("nothing is wider than the screen", async () => {
        await reopenOn(kSmall);
        await push("rtkChangeComponentStatus", "x".repeat(300));
        await untilReceived(2);
        await button("Pause").click();
        await push("first");
        await untilNewer(1);
        await button("Type: all").click();
        assert.equal(await page.evaluate(() => document.documentElement.scrollWidth), 360);
        await button("x".repeat(300)).click();
        assert.equal(await page.evaluate(() => document.documentElement.scrollWidth), 360);
    });
});

describe("The arrow keys", () => {
    it("reach every control of the list", async () => {
        await push("first", "second");
        await untilReceived(2);
        await button("Pause").click();
        await push("third");
        await untilNewer(1);
        await button("Detach").focus();
        await press("ArrowRight", "ArrowUp");
        assert.equal(await focused(), "1 newer");
        await press("ArrowRight");
        assert.equal(await focused(), "Type: all");
        await press("ArrowRight");
        assert.equal(await focused(), "Go on");
        await press("ArrowRight");
        assert.equal(await focused(), "Clear");
        await press("ArrowLeft", "ArrowLeft", "Enter");
        assert.equal(await focused(), "All types");
        await press("Escape");
        assert.equal(await focused(), "Type: all");
        await press("Enter", "ArrowRight", "ArrowRight");
        assert.equal(await focused(), "second");
        await press("Enter");
        assert.equal(await focused(), "Type: second");
        await press("ArrowDown", "ArrowRight");
        assert.equal(await focused(), "Copy");
        await press("ArrowLeft");
        assert.match(await focused(), /^second/);
    });

    for (const [name, screen] of [["television", kTelevision], ["telephone", kSmall]]) {
        it(`reach the newer messages from wherever the list is read, on a ${name}`, async () => {
            await reopenOn(screen);
            await push(...Array(30).fill("first"));
            await untilReceived(30);
            await message(25).locator("summary").focus();
            await push("second");
            await untilNewer(1);
            await press("ArrowRight");
            assert.equal(await focused(), "1 newer");
            await press("Enter");
            assert.match(await focused(), /^second/);
        });
    }
});
