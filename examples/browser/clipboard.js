/** Copies a text; whether that succeeded. */
export async function copyText(text) {
    try {
        await navigator.clipboard.writeText(text);
        return true;
    } catch {
        return copySelected(text);
    }
}

// Browsers give navigator.clipboard only to pages of https and of this machine; a receiver is mostly neither.
function copySelected(text) {
    const { activeElement } = document;
    const field = document.createElement("textarea");
    field.value = text;
    field.className = "unseen";
    document.body.append(field);
    field.select();
    const isCopied = document.execCommand("copy");
    field.remove();
    activeElement?.focus({ preventScroll: true });
    return isCopied;
}
