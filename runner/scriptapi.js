// The functions that scripts call. Documented in docs/scripting.md.
(function (native, global) {
    "use strict";

    function text(value) {
        if (value === undefined || value === null)
            return "";
        return typeof value === "string" ? value : show(value);
    }

    // How a report shows a value.
    function show(value) {
        if (typeof value === "string")
            return value;
        if (typeof value === "object" && value !== null && !(value instanceof Error)) {
            try {
                return JSON.stringify(value);
            } catch (error) {
                // A structure that holds itself.
                return String(value);
            }
        }
        return String(value);
    }

    function isSame(a, b, depth) {
        if (a === b || (a !== a && b !== b))
            return true;
        if (typeof a !== "object" || typeof b !== "object" || a === null || b === null)
            return false;
        if (depth > 100)
            throw new RangeError("check.equal: the values are nested too deep");
        if (a instanceof Date && b instanceof Date)
            return a.getTime() === b.getTime();
        if (Array.isArray(a) !== Array.isArray(b))
            return false;
        var keys = Object.keys(a);
        return keys.length === Object.keys(b).length && keys.every(function (key) {
            return Object.prototype.hasOwnProperty.call(b, key) && isSame(a[key], b[key], depth + 1);
        });
    }

    function isInt32(value) {
        return typeof value === "number" && value === (value | 0);
    }

    // A misspelled option must not turn an expected failure into a failure without a word.
    function expectsFail(options) {
        if (options === undefined || options === null)
            return false;
        if (typeof options !== "object")
            throw new TypeError("options have to be an object like {expectFail: true}");
        Object.keys(options).forEach(function (key) {
            if (key !== "expectFail")
                throw new TypeError("unknown option '" + key + "'");
        });
        return Boolean(options.expectFail);
    }

    function message(value) {
        return value === undefined ? "Verification" : text(value);
    }

    function logFunction(type) {
        return function (message, details) {
            native.log(type, text(message), text(details));
        };
    }

    global.log = {
        info: logFunction("LOG"),
        warning: logFunction("WARNING"),
        error: logFunction("ERROR"),
        fatal: logFunction("FATAL")
    };

    global.check = {
        that: function (condition, title, options) {
            var expectFail = expectsFail(options);
            native.check(Boolean(condition), message(title),
                         condition ? "The condition holds." : "The condition does not hold.",
                         expectFail);
            return Boolean(condition);
        },
        equal: function (actual, expected, title, options) {
            var expectFail = expectsFail(options);
            if (isInt32(actual) && isInt32(expected)) {
                native.compareNumbers(expected, actual, message(title), expectFail);
                return actual === expected;
            }
            var same = isSame(actual, expected, 0);
            var shownExpected = show(expected);
            var shownActual = show(actual);
            // The text 5 and the number 5 look alike.
            if (!same && shownExpected === shownActual) {
                shownExpected += " (" + typeof expected + ")";
                shownActual += " (" + typeof actual + ")";
            }
            native.compareTexts(same, shownExpected, shownActual, message(title), expectFail);
            return same;
        },
        pass: function (title, details) {
            native.check(true, message(title), text(details), false);
        },
        fail: function (title, details) {
            native.check(false, message(title), text(details), false);
        }
    };

    global.startSection = function (title, description) {
        native.startSection(text(title), text(description));
    };

    global.endSection = function () {
        native.endSection();
    };

    global.section = function (title, description, body) {
        if (body === undefined && typeof description === "function") {
            body = description;
            description = "";
        }
        if (typeof body !== "function")
            throw new TypeError("section: the last argument has to be a function");
        global.startSection(title, description);
        try {
            return body();
        } finally {
            global.endSection();
        }
    };

    global.attach = function (file, title) {
        native.attach(text(file), text(title));
    };

    global.file = {
        read: function (path) {
            return native.readFile(text(path));
        },
        write: function (path, content) {
            native.writeFile(text(path), text(content));
        },
        exists: function (path) {
            return native.fileExists(text(path));
        }
    };

    function DataRecord(table, row) {
        this.values = table.row(row);
        this.field = function (name) {
            var column = table.column(text(name));
            if (column < 0)
                throw new RangeError("there is no field '" + text(name) + "' in '" + table.name + "'");
            // A record may have fewer values than the table has fields.
            return column < this.values.length ? this.values[column] : "";
        };
    }

    function DataTable(table) {
        this.fields = table.fields;
        this.count = table.count;
        this.record = function (row) {
            if (!isInt32(row) || row < 0 || row >= table.count)
                throw new RangeError("there is no record " + show(row) + " in '" + table.name + "'");
            return new DataRecord(table, row);
        };
    }

    DataTable.prototype.forEach = function (body) {
        for (var row = 0; row < this.count; ++row)
            body(this.record(row), row);
    };

    DataTable.prototype[Symbol.iterator] = function () {
        var table = this;
        var row = 0;
        return {
            next: function () {
                if (row >= table.count)
                    return {value: undefined, done: true};
                return {value: table.record(row++), done: false};
            }
        };
    };

    global.data = {
        open: function (path, sheet) {
            return new DataTable(native.openData(text(path), text(sheet)));
        }
    };

    global.env = function (name) {
        return native.environment(text(name));
    };

    global.scriptArguments = native.scriptArguments();

    global.snooze = function (seconds) {
        native.snooze(Number(seconds));
    };

    global.include = function (path) {
        var outcome = native.include(text(path));
        if (outcome.hasThrown)
            throw outcome.value;
        return outcome.value;
    };

    global.abortProcess = function () {
        native.abortProcess();
    };
})
