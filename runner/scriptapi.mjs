// The functions that scripts call. Documented in docs/scripting.md.
export default function (native, global, nameFunctions, installObjects, installData) {
    function text(value) {
        return value === undefined || value === null ? "" : show(value);
    }

    var tagOf = Function.prototype.call.bind(Object.prototype.toString);

    // The parts of a structure that JSON would hide.
    function shownParts(value) {
        if (value instanceof FoundObject)
            return value.name;
        switch (tagOf(value)) {
        case "[object Map]":
            return "Map " + JSON.stringify(Array.from(value.entries()));
        case "[object Set]":
            return "Set " + JSON.stringify(Array.from(value.values()));
        case "[object Array]":
        case "[object Object]":
            return JSON.stringify(value);
        default:
            return String(value);
        }
    }

    // How a report shows a value. Never fails.
    function show(value) {
        if (typeof value === "string")
            return value;
        try {
            return typeof value === "object" && value !== null ? shownParts(value) : String(value);
        } catch (error) {
            return tagOf(value);
        }
    }

    function haveSameMembers(a, b, depth) {
        if (a.length !== b.length)
            return false;
        var keys = Object.keys(a);
        return keys.length === Object.keys(b).length && keys.every(function (key) {
            return Object.prototype.hasOwnProperty.call(b, key) && isSame(a[key], b[key], depth + 1);
        });
    }

    function haveSameEntries(a, b, depth) {
        var left = Array.from(a.entries());
        var right = Array.from(b.entries());
        return left.length === right.length && left.every(function (entry) {
            return right.some(function (other) {
                return isSame(entry, other, depth + 1);
            });
        });
    }

    function areSameObjects(a, b, depth) {
        if (a instanceof data.DataRecord && b instanceof data.DataRecord)
            return isSame(a.values, b.values, depth + 1);
        switch (tagOf(a)) {
        case "[object Date]":
        case "[object Number]":
        case "[object String]":
        case "[object Boolean]":
            return isSame(a.valueOf(), b.valueOf(), depth + 1);
        case "[object RegExp]":
            return String(a) === String(b);
        case "[object Error]":
            return a.name === b.name && a.message === b.message;
        case "[object Map]":
        case "[object Set]":
            return haveSameEntries(a, b, depth);
        case "[object ArrayBuffer]":
            return haveSameMembers(new Uint8Array(a), new Uint8Array(b), depth);
        case "[object Array]":
        case "[object Object]":
            return haveSameMembers(a, b, depth);
        default:
            if (ArrayBuffer.isView(a))
                return haveSameMembers(Array.from(a), Array.from(b), depth);
            throw new TypeError("check.equal can't compare values like " + tagOf(a));
        }
    }

    function isSame(a, b, depth) {
        if (a === b || (a !== a && b !== b))
            return true;
        if (typeof a !== "object" || typeof b !== "object" || a === null || b === null)
            return false;
        if (depth > 100)
            throw new RangeError("check.equal: the values are nested too deeply");
        return tagOf(a) === tagOf(b) && areSameObjects(a, b, depth);
    }

    function isInt32(value) {
        return typeof value === "number" && value === (value | 0);
    }

    // A misspelled option must not turn an expected failure into a failure without a word.
    function knownOptions(options, names) {
        if (options === undefined || options === null)
            return {};
        if (typeof options !== "object")
            throw new TypeError("options have to be an object like {expectFail: true}");
        Object.keys(options).forEach(function (key) {
            if (names.indexOf(key) < 0)
                throw new TypeError("unknown option '" + key + "'");
        });
        return options;
    }

    // What a check looks at: with the option "retry" a function that is called until the check holds.
    function checkedValue(actual, options, holds) {
        if (options.retry === undefined)
            return actual;
        var time = milliseconds(options.retry, 0);
        if (typeof actual !== "function")
            throw new TypeError("option 'retry' needs a function that gives the value to check");
        var value;
        objects.poll(function () {
            value = actual();
            return holds(value);
        }, time);
        return value;
    }

    function milliseconds(value, otherwise) {
        if (value === undefined)
            return otherwise;
        if (!isInt32(value) || value < 0)
            throw new TypeError("a time has to be a whole number of milliseconds from 0 to 2147483647, not "
                                + show(value) + " (" + typeof value + ")");
        return value;
    }

    // Where an empty text would be taken for something that was asked for.
    function name(value, what) {
        if (text(value) === "")
            throw new TypeError(what + " has to have a name");
        return text(value);
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

    var objects = installObjects(native, nameFunctions, {
        text: text,
        show: show,
        isInt32: isInt32,
        isSame: function (a, b) {
            return isSame(a, b, 0);
        },
        milliseconds: milliseconds,
        knownOptions: knownOptions,
        requireName: name,
        targetPath: function (file) {
            return native.targetPath(file);
        }
    });
    var FoundObject = objects.FoundObject;
    var data = installData({text: text, show: show, isInt32: isInt32});

    // What a verification point is made of when its file does not exist.
    function describePoint(options, checked) {
        if (options.object === undefined && options.type === undefined && options.properties === undefined)
            return;
        var types = native.pointTypes();
        if (types.indexOf(options.type) < 0)
            throw new TypeError("option 'type' has to be one of " + types.join(", "));
        var hasProperties = Array.isArray(options.properties) && options.properties.length > 0;
        if (hasProperties !== (options.type === "ObjectProperties"))
            throw new TypeError("option 'properties' has to be an array of names, of type ObjectProperties alone");
        checked.object = options.object instanceof FoundObject ? options.object.name
                                                               : nameFunctions.nameText(options.object);
        name(checked.object, "option 'object'");
        checked.type = options.type;
        checked.properties = hasProperties ? options.properties.map(text) : [];
    }

    global.check = {
        that: function (actual, title, options) {
            var known = knownOptions(options, ["expectFail", "retry"]);
            var expectFail = Boolean(known.expectFail);
            var condition = checkedValue(actual, known, Boolean);
            native.check(Boolean(condition), message(title),
                         condition ? "The condition holds." : "The condition does not hold.",
                         expectFail);
            return Boolean(condition);
        },
        equal: function (value, expected, title, options) {
            var known = knownOptions(options, ["expectFail", "retry"]);
            var expectFail = Boolean(known.expectFail);
            var actual = checkedValue(value, known, function (last) {
                return isSame(last, expected, 0);
            });
            if (isInt32(actual) && isInt32(expected)) {
                native.compareNumbers(expected, actual, message(title), expectFail);
                return actual === expected;
            }
            var same = isSame(actual, expected, 0);
            var shownExpected = show(expected);
            var shownActual = show(actual);
            // The text 5 and the number 5 look alike, as do members that JSON leaves out.
            if (!same && shownExpected === shownActual) {
                shownExpected += " (" + typeof expected + ")";
                shownActual += " (" + (typeof actual === typeof expected ? "another " : "")
                    + typeof actual + ")";
            }
            native.compareTexts(same, shownExpected, shownActual, message(title), expectFail);
            return same;
        },
        pass: function (title, details) {
            native.check(true, message(title), text(details), false);
        },
        fail: function (title, details) {
            native.check(false, message(title), text(details), false);
        },
        point: function (file, options) {
            var flags = ["expectFail", "silent", "stopOnFail", "screenshotOnPass", "screenshotOnFail",
                         "screenshotOnWarning", "screenshotOnError"];
            var known = knownOptions(options, flags.concat("delay", "object", "properties", "record",
                                                           "retry", "type"));
            if (known.record !== undefined && !(known.record instanceof data.DataRecord))
                throw new TypeError("option 'record' has to be a record of a table of data.open");
            var table = known.record ? data.sourceOf(known.record) : null;
            var row = known.record ? data.rowOf(known.record) : -1;
            var checked = {delay: milliseconds(known.delay, 0), retry: milliseconds(known.retry, 0)};
            flags.forEach(function (flag) {
                checked[flag] = Boolean(known[flag]);
            });
            describePoint(known, checked);
            return native.verification().verify(text(file), checked, table, row);
        }
    };

    global.find = objects.find;
    global.findAll = objects.findAll;
    global.waitFor = objects.waitFor;

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
            if (content === undefined)
                throw new TypeError("file.write takes the name of a file and its content");
            native.writeFile(text(path), text(content));
        },
        exists: function (path) {
            return native.fileExists(text(path));
        }
    };

    global.data = {
        open: function (path, sheet) {
            return new data.DataTable(native.openData(text(path), text(sheet)));
        }
    };

    global.env = function (name) {
        return native.environment(text(name));
    };

    global.scriptArguments = native.scriptArguments();

    global.snooze = function (seconds) {
        if (Number.isNaN(Number(seconds)))
            throw new TypeError("snooze takes a number of seconds, not " + text(seconds));
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

    // For other modules.
    return {text: text, milliseconds: milliseconds};
}
