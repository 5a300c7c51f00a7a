// What the tests of the page stand on: the push server's program, a server of the page's files, browsers.
import { spawn } from "node:child_process";
import { once } from "node:events";
import { readFile } from "node:fs/promises";
import { createServer } from "node:http";
import { createRequire } from "node:module";
import { extname } from "node:path";
import { createInterface } from "node:readline";

const { ORVU_BROWSER_PACKAGES, ORVU_CHROMIUM = "/usr/bin/chromium", ORVU_PUSH_SERVER } = process.env;
const packages = ORVU_BROWSER_PACKAGES ? `${ORVU_BROWSER_PACKAGES}/package.json` : import.meta.url;
const { chromium } = createRequire(packages)("playwright-core");

const kFlags = ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
    "--disable-component-update", "--disable-sync"];
const kTypes = { ".html": "text/html; charset=utf-8", ".css": "text/css", ".js": "text/javascript" };

export const examples = new URL("../../examples/browser/", import.meta.url);

/** The program push-server.cpp. */
export class PushServer {
    #process = spawn(ORVU_PUSH_SERVER, {
        env: { ORVU_LOG: "none", ...process.env },
        stdio: ["pipe", "pipe", "inherit"],
    });
    #exit = once(this.#process, "exit");
    #lines = createInterface({ input: this.#process.stdout })[Symbol.asyncIterator]();
    port;

    static async start() {
        const server = new PushServer();
        server.#process.stdin.on("error", () => {});  // #event() and quit() notice that the program has ended
        server.port = Number((await server.#event()).replace("listening ", ""));
        return server;
    }

    /** Has a command done; gives what came of it. */
    async tell(command) {
        this.#process.stdin.write(`${command}\n`);
        return this.#event();
    }

    /** Resolves with the last event. */
    async restart() {
        await this.tell("restart");
        return this.#event();
    }

    push(message) {
        return this.tell(`push ${typeof message === "string" ? message : JSON.stringify(message)}`);
    }

    async quit() {
        this.#process.stdin.end("quit\n");
        const [code, signal] = await this.#exit;
        return signal ?? code;
    }

    async #event() {
        const { value, done } = await this.#lines.next();
        if (done) throw new Error("The push server ended.");
        return value;
    }
}

/** Serves the page's files on a port of its own. */
export async function servePage() {
    const server = createServer(async (request, response) => {
        const name = new URL(request.url, "http://localhost").pathname.slice(1) || "index.html";
        try {
            const content = await readFile(new URL(name, examples));
            response.writeHead(200, { "Content-Type": kTypes[extname(name)] }).end(content);
        } catch {
            response.writeHead(404).end();
        }
    });
    await once(server.listen(0, "127.0.0.1"), "listening");
    return { url: `http://127.0.0.1:${server.address().port}/`, close: () => server.close() };
}

/** A browser with a profile of its own. It is killed in the end: asked to close, Chromium may take for ever. */
export async function startBrowser() {
    const server = await chromium.launchServer({ executablePath: ORVU_CHROMIUM, headless: true, args: kFlags });
    const browser = await chromium.connect(server.wsEndpoint());
    return {
        newContext: (options) => browser.newContext(options),
        kill: () => server.kill(),
    };
}

/** Opens the page for a push server. */
export async function openPage(context, site, server) {
    const page = await context.newPage();
    await page.goto(`${site.url}?host=127.0.0.1&port=${server.port}`);
    return page;
}

export function untilState(page, state) {
    return page.locator(`#status[data-state="${state}"]`).waitFor();
}

export async function openAttachedPage(context, site, server) {
    const page = await openPage(context, site, server);
    await untilState(page, "attached");
    return page;
}
