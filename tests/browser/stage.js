// What each test of the page has: a push server, and the page on a television, attached to it. Tests that import this
// get it anew each time, and fail where the page complained.
import assert from "node:assert/strict";
import { after, afterEach, before, beforeEach } from "node:test";

import { PushServer, openAttachedPage, servePage, startBrowser } from "./support.js";

export const kTelevision = { viewport: { width: 1920, height: 1080 } };
export const kTelephone = { viewport: { width: 390, height: 844 }, isMobile: true, hasTouch: true };

export let site;
export let browser;
export let context;
export let server;
export let page;
export let complaints;

// The browser itself tells of every attempt that failed.
const isComplaint = (message) => message.type() === "error" && !message.text().startsWith("WebSocket connection to");

export async function openOn(screen) {
    context = await browser.newContext({ timezoneId: "America/Sao_Paulo", reducedMotion: "reduce", ...screen });
    page = await openAttachedPage(context, site, server);
    page.on("console", (message) => isComplaint(message) && complaints.push(message.text()));
    page.on("pageerror", (error) => complaints.push(error.message));
}

/** The page anew, on another screen. */
export async function reopenOn(screen) {
    await context.close();
    await server.restart();
    await openOn(screen);
}

export const message = (number) => page.locator("#messages li").nth(number);
export const body = (number) => message(number).locator(".body");

export async function press(...keys) {
    for (const key of keys) await page.keyboard.press(key);
}

/** The words of what has the focus; of a message's summary those of the message. */
export const focused = () => page.evaluate(() => {
    const { activeElement } = document;
    return (activeElement.closest("summary")?.closest("li") ?? activeElement).innerText;
});

before(async () => {
    site = await servePage();
    browser = await startBrowser();
});

after(async () => {
    await browser?.kill();
    site?.close();
});

beforeEach(async () => {
    complaints = [];
    server = await PushServer.start();
    await openOn(kTelevision);
});

afterEach(async () => {
    await context.close();
    assert.equal(await server.quit(), 0);
    assert.deepEqual(complaints, []);
});
