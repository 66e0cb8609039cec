// Names of objects as values of scripts, and the names file of a suite. Documented in
// docs/object-names.md.
export default function (global, grammar) {
    // Before a name of the file, in the text of a name that refers to it: ":" may begin a text of the
    // file itself.
    var reference = "\u0001";

    // More levels and characters than any window needs. Names that share what they refer to could
    // have texts of any length.
    var maxDepth = 100;
    var maxLength = 65536;

    function Pattern(operator, text) {
        this.operator = operator;
        this.text = text;
    }

    function patternFunction(name, operator) {
        global[name] = function (text) {
            if (typeof text !== "string")
                throw new TypeError(name + " takes a text");
            return Object.freeze(new Pattern(operator, text));
        };
    }

    patternFunction("wildcard", "?=");
    patternFunction("regexp", "~=");

    function quoted(text) {
        return "'" + text.replace(/[\\']/g, "\\$&") + "'";
    }

    function isPlainObject(value) {
        return Object.prototype.toString.call(value) === "[object Object]" && typeof value !== "function";
    }

    function valueText(key, value, symbolOf, depth) {
        if (typeof value === "string" || typeof value === "number" || typeof value === "boolean")
            return "=" + quoted(String(value));
        if (value instanceof Pattern)
            return value.operator + quoted(value.text);
        if (!isPlainObject(value))
            throw new TypeError("the value of '" + key + "' in a name has to be a text, a number, true or "
                                + "false, wildcard(...), regexp(...) or another name");
        var symbol = symbolOf(value);
        return "=" + (symbol === undefined ? objectText(value, symbolOf, depth + 1) : quoted(symbol));
    }

    function objectText(value, symbolOf, depth) {
        if (depth > maxDepth)
            throw new RangeError("the name is nested more than " + maxDepth + " levels deep");
        var keys = Object.keys(value);
        if (keys.length === 0)
            throw new TypeError("a name without properties fits everything");
        var text = "{" + keys.map(function (key) {
            if (key === "" || /[\s'"{}=?~\\]/.test(key))
                throw new TypeError("'" + key + "' can't be a property of a name");
            return key + valueText(key, value[key], symbolOf, depth);
        }).join(" ") + "}";
        if (text.length > maxLength)
            throw new RangeError("the name has more than " + maxLength + " characters");
        return text;
    }

    // The text form of a name: a text as it is, or an object of properties. symbolOf gives the text
    // that stands for an object within the name, or undefined to have it written out.
    function nameText(value, symbolOf) {
        if (typeof value === "string" && value !== "")
            return value;
        if (!isPlainObject(value) || value instanceof Pattern)
            throw new TypeError("a name has to be a text or an object such as {type: \"QPushButton\"}");
        return objectText(value, symbolOf, 0);
    }

    function writtenOut() {
        return undefined;
    }

    function isSimilar(a, b) {
        return a.toLowerCase().replace(/_/g, "") === b.toLowerCase().replace(/_/g, "");
    }

    // names while the names file runs, and afterwards.
    function Names() {
        var known = Object.create(null);
        var lines = [];
        // On each object its first name; a Map of this engine looks through all of its keys.
        var mark = Symbol("name");

        function symbolOf(value) {
            return Object.prototype.hasOwnProperty.call(value, mark) ? reference + value[mark] : undefined;
        }

        function markFirstName(value, key) {
            if (typeof value === "object" && symbolOf(value) === undefined)
                Object.freeze(Object.defineProperty(value, mark, {value: key}));
        }

        function get(where) {
            return function (target, key) {
                if (typeof key !== "string" || key in target)
                    return target[key];
                var similar = Object.keys(target).filter(function (other) {
                    return isSimilar(other, key);
                });
                throw new ReferenceError("there is no name '" + key + "' " + where
                                         + (similar.length > 0 ? "; do you mean '" + similar[0] + "'?" : ""));
            };
        }

        function define(target, key, value) {
            if (key in target)
                throw new TypeError("the name '" + key + "' is defined twice");
            var text = nameText(value, symbolOf);
            var error = grammar.errorOf(text);
            if (error !== "")
                throw new TypeError("names." + key + " is not a valid name: " + error);
            lines.push([key, text]);
            markFirstName(value, key);
            target[key] = value;
            return true;
        }

        function refuse() {
            throw new TypeError("names are defined in the names file");
        }

        this.lines = lines;
        this.defining = new Proxy(known, {get: get("above this line"), set: define});
        this.reading = function (where) {
            return new Proxy(known, {get: get(where), set: refuse, deleteProperty: refuse,
                                     defineProperty: refuse});
        };
    }

    return {
        makeNames: function () {
            return new Names();
        },
        nameText: function (value) {
            return nameText(value, writtenOut);
        }
    };
}
