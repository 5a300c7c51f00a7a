/** The state of a connection. A browser cannot distinguish a server that refuses it from one that is not there. */
export type OrvuState =
    | "closed"                  // before open(), and for good after close()
    | "connecting"              // an attempt is under way
    | "attached"                // what the receiver pushes arrives here
    | "refused-or-unreachable"  // the attempt ended before there was a connection; pausing
    | "lost";                   // the connection ended; pausing

export interface OrvuClock {
    /** Milliseconds since 1970. */
    now(): number;
    setTimeout(callback: () => void, milliseconds: number): unknown;
    clearTimeout(timer: unknown): void;
}

export interface OrvuPushOptions {
    /** The pause after the first failure, which doubles with each further one. 1. */
    firstPauseSeconds?: number;
    /** The longest pause. Each is shortened by up to a quarter at random. 30. */
    longestPauseSeconds?: number;
    /** How long one attempt may take. 10. */
    attemptSeconds?: number;
    /** How long an echo may take; after that the connection counts as lost. 10. */
    echoSeconds?: number;
    /** How many texts may be without their echo. 16. */
    queueLimit?: number;
    /** A number from 0 up to, not including, 1. Math.random. */
    random?: () => number;
    /** The clock and its timers. The browser's. */
    clock?: OrvuClock;
    /** What makes the connection. The browser's WebSocket. */
    WebSocket?: new (url: string) => WebSocket;
}

export type OrvuPushErrorCode =
    | "empty"         // the server echoes no empty text
    | "too-long"      // the text is longer than 65536 bytes in UTF-8
    | "not-attached"  // there is no connection
    | "queue-full"    // queueLimit texts wait for their echoes
    | "lost";         // the connection ended, or was closed, before the echo came, or the server left the echo out

/** Why a text was not sent, or not echoed. */
export class OrvuPushError extends Error {
    readonly name: "OrvuPushError";
    readonly code: OrvuPushErrorCode;
    constructor(code: OrvuPushErrorCode, message: string);
}

/** The state of the connection changed. */
export class OrvuStateEvent extends Event {
    readonly type: "state";
    readonly state: OrvuState;
    /** The state in words, such as "refused or unreachable, trying again in 4 s". */
    readonly description: string;
    /** The pause before the next attempt; undefined where none is due. */
    readonly retryInSeconds: number | undefined;
    constructor(state: OrvuState, description: string, retryInSeconds: number | undefined);
}

/** A pushed message. */
export class OrvuMessageEvent extends Event {
    readonly type: "message";
    /** As it was sent. */
    readonly bytes: Uint8Array;
    /** How many bytes. */
    readonly size: number;
    /** When it arrived. */
    readonly time: Date;
    /** The bytes as UTF-8; other bytes become U+FFFD. */
    readonly text: string;
    /** The text parsed; undefined when it is not JSON (null is JSON). */
    readonly json: unknown;
    /** The message's "HEADER", which names its type; undefined when there is none. */
    readonly header: string | undefined;
    constructor(bytes: Uint8Array, time: Date);
}

/** A text of this page that came back. */
export class OrvuEchoEvent extends Event {
    readonly type: "echo";
    readonly text: string;
    constructor(text: string);
}

export interface OrvuPushEvents {
    state: OrvuStateEvent;
    message: OrvuMessageEvent;
    echo: OrvuEchoEvent;
}

type Listener<E extends Event> = ((event: E) => void) | { handleEvent(event: E): void };

/** One page's attachment to one push server, which serves one client at a time. */
export class OrvuPush extends EventTarget {
    /** @param url such as "ws://192.168.0.10:34000" */
    constructor(url: string, options?: OrvuPushOptions);

    readonly url: string;
    readonly state: OrvuState;
    /** How long the pause before the next attempt still lasts; undefined in other states. */
    readonly retryInSeconds: number | undefined;
    /** The state in words. */
    readonly description: string;

    /** Begins to attach, and goes on trying until close(). Has no effect once begun. Throws what WebSocket throws. */
    open(): void;

    /** Ends a pause: the next attempt begins at once. Has no effect in other states. */
    retryNow(): void;

    /** Sends one text. Resolves with the echo; rejects with an OrvuPushError, or a TypeError for a non-string. */
    send(text: string): Promise<string>;

    /** Detaches and stays so until open() is called again. Texts without an echo are rejected. */
    close(): void;

    addEventListener<K extends keyof OrvuPushEvents>(
        type: K,
        listener: Listener<OrvuPushEvents[K]> | null,
        options?: boolean | AddEventListenerOptions,
    ): void;
    removeEventListener<K extends keyof OrvuPushEvents>(
        type: K,
        listener: Listener<OrvuPushEvents[K]> | null,
        options?: boolean | EventListenerOptions,
    ): void;
}

/** How many bytes of UTF-8 the server would still take after `text`; negative for one that is too long. */
export function bytesLeft(text: string): number;
