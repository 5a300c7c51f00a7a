// The page around orvu-push.js: the receiver from the address line, its state, its messages, a text to it.
import { moveFocusWithArrows } from "./arrows.js";
import { Feed } from "./feed.js";
import { OrvuPush, bytesLeft } from "./orvu-push.js";

const kStateNames = {
    closed: "Not attached",
    connecting: "Connecting…",
    attached: "Attached",
    "refused-or-unreachable": "Refused or unreachable",
    lost: "Connection lost",
};

// What an empty list means: before anything came, and after the reader has cleared it.
const kWhyEmpty = {
    closed: ["This page is detached: what the receiver pushes does not arrive here."],
    connecting: ["Connecting to the receiver. Nothing can arrive yet."],
    attached: [
        "Attached, but the receiver has pushed nothing yet. What it pushes appears here, the newest first.",
        "You cleared the list. What the receiver pushes next appears here.",
    ],
    "refused-or-unreachable": ["Nothing can arrive: the receiver refuses this page, or cannot be reached."],
    lost: ["Nothing can arrive: the connection is lost."],
};

const kToggleNames = { closed: "Attach", attached: "Detach" };

const element = (id) => document.getElementById(id);
const textField = element("send").elements.namedItem("text");
const sendButton = element("send").querySelector("button");
const feed = new Feed({
    list: element("messages"),
    empty: element("empty"),
    count: element("count"),
    newer: element("newer"),
    filter: element("filter"),
    types: element("types"),
    pause: element("pause"),
    clear: element("clear"),
});
let push = null;

function attachAsAddressed() {
    const query = new URLSearchParams(location.search);
    const { host, port } = element("connect").elements;
    host.value = query.get("host") ?? (location.hostname || "127.0.0.1");
    port.value = query.get("port") ?? "";
    if (host.value && port.value) attach(host.value.trim(), port.value.trim());
    else (host.value ? port : host).focus();
}

function attach(host, port) {
    push = new OrvuPush(`ws://${host}:${port}`);
    push.addEventListener("state", showState);
    push.addEventListener("message", showMessage);
    element("address").textContent = push.url;
    element("receiver").open = false;
    open();
}

function open() {
    try {
        push.open();
    } catch (error) {
        element("detail").textContent = `The browser does not take this address: ${error.message}`;
        element("receiver").open = true;
    }
}

function showState({ state, description }) {
    element("status").dataset.state = state;
    element("state").textContent = kStateNames[state];
    element("state-brief").textContent = kStateNames[state];
    document.body.dataset.state = state;
    feed.explain(...kWhyEmpty[state]);
    element("said").textContent = description;
    document.title = `${kStateNames[state]} – Orvu push`;
    element("detail").textContent = "";
    element("hint").hidden = state !== "refused-or-unreachable";
    element("retry").hidden = push.retryInSeconds === undefined;
    element("toggle").hidden = false;
    element("toggle").textContent = kToggleNames[state] ?? "Stop trying";
    showCountdown();
    showRoom();
}

// Outside of any live region: a screen reader hears of the pause once, not every second.
function showCountdown() {
    const seconds = push?.retryInSeconds;
    if (seconds !== undefined) element("detail").textContent = `Trying again in ${Math.ceil(seconds)} s`;
}

function showMessage(message) {
    feed.add(message);
    element("news").textContent = `New message: ${message.header ?? "no type"}, ${message.size} bytes`;
}

function showRoom() {
    const room = bytesLeft(textField.value);
    const words = room < 0 ? `${-room} bytes too long` : `Room for ${room} more bytes`;
    element("room").textContent = room < 200 ? words : "";
    element("room").classList.toggle("wrong", room < 0);
    sendButton.disabled = push?.state !== "attached" || textField.value === "" || room < 0;
}

async function sendText(event) {
    event.preventDefault();
    const sent = push.send(textField.value);
    textField.value = "";
    showRoom();
    try {
        showEcho(`Echoed: ${await sent}`);
    } catch (error) {
        showEcho(error.message, true);
    }
}

function showEcho(words, wrong = false) {
    element("echo").textContent = words;
    element("echo").classList.toggle("wrong", wrong);
}

element("retry").addEventListener("click", () => push.retryNow());
element("toggle").addEventListener("click", () => (push.state === "closed" ? open() : push.close()));
element("send").addEventListener("input", showRoom);
element("send").addEventListener("submit", sendText);
setInterval(showCountdown, 250);
moveFocusWithArrows(element("newer"));
feed.explain("Not attached: choose a receiver to see what it pushes.");
attachAsAddressed();
