// The arrow keys of a remote control move the focus to what lies in their direction.

const kFocusable = "button, input, summary";
const kDirections = { ArrowUp: "up", ArrowDown: "down", ArrowLeft: "left", ArrowRight: "right" };

// Where the focus was: what had it may since have been hidden.
let place = null;

/** To the left and right of everything lies `beside`, while it is shown: what floats over the page, for one. */
export function moveFocusWithArrows(beside) {
    document.addEventListener("focusin", ({ target }) => (place = target.getBoundingClientRect()));
    document.addEventListener("keydown", (event) => {
        const direction = kDirections[event.key];
        if (!direction || event.altKey || event.ctrlKey || event.metaKey || event.shiftKey) return;
        if (isForTheCaret(event.target, direction)) return;
        event.preventDefault();
        if (!scrollsOn(document.activeElement, direction)) nextIn(direction, beside)?.focus();
    });
}

function isForTheCaret(target, direction) {
    if (target.tagName !== "INPUT" || direction === "up" || direction === "down") return false;
    const edge = direction === "left" ? 0 : target.value.length;
    return target.selectionStart !== edge || target.selectionEnd !== edge;
}

// A message longer than the screen is read to its end before the focus leaves it.
function scrollsOn(active, direction) {
    const item = active?.closest("li");
    if (!item || direction === "left" || direction === "right") return false;
    const scroller = scrollerOf(item);
    const view = viewOf(scroller);
    const box = item.getBoundingClientRect();
    const hidden = direction === "down" ? box.bottom - view.bottom : view.top - box.top;
    if (hidden <= 8) return false;
    const step = Math.min(hidden, (view.bottom - view.top) / 2);
    const before = scroller.scrollTop;
    scroller.scrollTop += direction === "down" ? step : -step;
    return scroller.scrollTop !== before;
}

function scrollerOf(item) {
    const list = item.parentElement;
    return getComputedStyle(list).overflowY === "auto" ? list : document.scrollingElement;
}

// What is fixed at the top of the page, over its messages, takes the page's scroll padding.
function viewOf(scroller) {
    if (scroller !== document.scrollingElement) return scroller.getBoundingClientRect();
    return { top: parseFloat(getComputedStyle(scroller).scrollPaddingTop) || 0, bottom: innerHeight };
}

function nextIn(direction, beside) {
    const all = [...document.querySelectorAll(kFocusable)].filter(canHaveFocus);
    const active = document.activeElement;
    const from = all.includes(active) ? active.getBoundingClientRect() : place;
    if (!from) return all[0];
    const ways = all.map((one) => ({ one, way: wayTo(one.getBoundingClientRect(), from, direction) }));
    const nearest = ways.filter(({ way }) => way < Infinity).sort((a, b) => a.way - b.way)[0]?.one;
    const isUpright = direction === "up" || direction === "down";
    return nearest ?? (!isUpright && canHaveFocus(beside) ? beside : undefined);
}

function canHaveFocus(one) {
    const folded = one.tagName !== "SUMMARY" && one.closest("details:not([open])");
    return !one.disabled && !folded && one.getClientRects().length > 0;
}

// How far `to` lies in the direction, what lies aside counting thrice; Infinity when it does not lie there.
function wayTo(to, from, direction) {
    const ahead = {
        up: from.top - to.bottom,
        down: to.top - from.bottom,
        left: from.left - to.right,
        right: to.left - from.right,
    };
    if (ahead[direction] < -1) return Infinity;
    const isUpright = direction === "up" || direction === "down";
    const aside = isUpright ? Math.max(ahead.left, ahead.right) : Math.max(ahead.up, ahead.down);
    return ahead[direction] + 3 * Math.max(0, aside);
}
