// What the scripts of Morvex can call, for editors. docs/scripting.md explains it.
// A script that begins with   /// <reference path="PREFIX/lib/morvex.d.ts" />   is completed by it;
// so are all scripts of a directory whose jsconfig.json has it among its "files".

/** What `wildcard` and `regexp` give: a text of a name that fits several values. */
interface NamePattern {
    readonly operator: string;
    readonly text: string;
}

/** A text such as `{name='save'}`, or an object such as `{text: "Save", window: names.main}`. */
type ObjectName = string | { [property: string]: any };

interface Place {
    x: number;
    y: number;
}

interface MouseOptions {
    x?: number;
    y?: number;
    button?: "left" | "right" | "middle" | "back" | "forward";
    /** `Shift`, `Ctrl`, `Alt` and `Meta`, joined by "+". */
    modifiers?: string;
}

interface ClickOptions extends MouseOptions {
    /** For how many milliseconds the button is held. */
    hold?: number;
}

interface WheelOptions extends MouseOptions {
    horizontal?: boolean;
}

interface DragOptions extends MouseOptions {
    /** The place where it ends. */
    to?: MouseOptions;
    /** Places of the object on the way, such as "60,40 100,100". */
    via?: string;
}

interface CheckOptions {
    expectFail?: boolean;
    /** For how many milliseconds the function that gives the value is called again. */
    retry?: number;
}

interface PointOptions {
    expectFail?: boolean;
    silent?: boolean;
    stopOnFail?: boolean;
    screenshotOnPass?: boolean;
    screenshotOnFail?: boolean;
    screenshotOnWarning?: boolean;
    screenshotOnError?: boolean;
    delay?: number;
    retry?: number;
    record?: DataRecord;
    object?: ObjectName | FoundObject;
    type?: "ObjectProperties" | "Screenshot" | "Table" | "Visual";
    properties?: string[];
}

interface ItemOptions {
    column?: number;
    /** Of several with the same text, from 1. */
    occurrence?: number;
    timeout?: number;
}

/** What the mouse acts on. */
interface MouseTarget {
    readonly name: string;
    readonly properties: { [property: string]: any };
    get(property: string): any;
    exists(): boolean;
    click(options?: ClickOptions): void;
    click(x: number, y: number, options?: ClickOptions): void;
    doubleClick(options?: MouseOptions): void;
    doubleClick(x: number, y: number, options?: MouseOptions): void;
    rightClick(options?: ClickOptions): void;
    rightClick(x: number, y: number, options?: ClickOptions): void;
    hover(options?: MouseOptions): void;
    hover(x: number, y: number, options?: MouseOptions): void;
    /** Toward the user; less than 0 for the other way. */
    wheel(steps: number, options?: WheelOptions): void;
    drag(to: FoundObject | Item | Place, options?: DragOptions): void;
}

/** What `find` gives. Times are in milliseconds. */
interface FoundObject extends MouseTarget {
    readonly children: FoundObject[];
    set(property: string, value: any): void;
    close(): void;
    /** `<Return>`, `<Ctrl+A>` and the like are keys, `<Right*12>` is a key 12 times, `<<` is `<`. */
    type(keys: string): void;
    /** Replaces what the field holds with the value of an environment variable. */
    typePassword(variable: string): void;
    /** Writes a picture of it, a PNG. */
    screenshot(file: string): void;
    waitFor(property: string, value: any, timeout?: number): void;
    /** Hidden counts as gone. */
    waitUntilGone(timeout?: number): void;
    item(text: string, timeout?: number): Item;
    item(text: string, options: ItemOptions): Item;
    item(row: number, column: number, timeout?: number): Item;
}

/** A cell, an entry, a node, a tab: a part of an object that is no object of its own. */
interface Item extends MouseTarget {
    text(): string;
    activate(): void;
    select(): void;
    expand(): void;
    collapse(): void;
    toggle(): void;
    check(): void;
    uncheck(): void;
    edit(text: string): void;
}

/** An application that runs, or one of its processes. */
interface ApplicationContext {
    readonly name: string;
    readonly processId: number;
    isRunning(): boolean;
    isFrozen(timeout?: number): boolean;
    output(): string;
    errorOutput(): string;
}

interface DataRecord {
    readonly values: string[];
    field(name: string): string;
}

interface DataTable {
    readonly fields: string[];
    readonly count: number;
    record(index: number): DataRecord;
    forEach(body: (record: DataRecord, index: number) => void): void;
    [Symbol.iterator](): Iterator<DataRecord>;
}

declare namespace log {
    function info(message: any, details?: any): void;
    function warning(message: any, details?: any): void;
    function error(message: any, details?: any): void;
    function fatal(message: any, details?: any): void;
}

/** Each check is a verification of its own; the script goes on when it fails. */
declare namespace check {
    function that(condition: any, message?: any, options?: CheckOptions): boolean;
    function equal(actual: any, expected: any, message?: any, options?: CheckOptions): boolean;
    function pass(message?: any, details?: any): void;
    function fail(message?: any, details?: any): void;
    /** Compares the application with the file points/NAME.xml. */
    function point(name: string, options?: PointOptions): boolean;
}

declare namespace application {
    /** Without arguments the application that the suite names. */
    function start(program?: string, ...args: any[]): ApplicationContext;
    function stop(context?: ApplicationContext): void;
    function contexts(): ApplicationContext[];
    function current(): ApplicationContext;
    function setCurrent(context: ApplicationContext): void;
    function waitForApplication(timeout?: number): ApplicationContext;
    function output(context?: ApplicationContext): string;
    function errorOutput(context?: ApplicationContext): string;
}

declare namespace file {
    function read(path: string): string;
    function write(path: string, text: any): void;
    function exists(path: string): boolean;
}

declare namespace data {
    function open(file: string, sheet?: string): DataTable;
}

declare function currentApplicationContext(): ApplicationContext;
declare function setApplicationContext(context: ApplicationContext): void;
declare function waitForApplicationLaunch(timeout?: number): ApplicationContext;

declare function find(name: ObjectName, timeout?: number): FoundObject;
declare function findAll(name: ObjectName): FoundObject[];
/** Calls the function until what it returns is true, and gives what it returned last. */
declare function waitFor<T>(condition: () => T, timeout?: number): T;

declare function wildcard(text: string): NamePattern;
declare function regexp(text: string): NamePattern;
/** The names in the names.js of the suite. */
declare const names: { [name: string]: any };

declare function section<T>(title: any, body: () => T): T;
declare function section<T>(title: any, description: any, body: () => T): T;
declare function startSection(title: any, description?: any): void;
declare function endSection(): void;

declare function attach(file: string, message?: any): void;
declare function include(path: string): any;
declare function env(name: string): string;
declare const scriptArguments: string[];
declare function snooze(seconds: number): void;
declare function abortProcess(): void;
