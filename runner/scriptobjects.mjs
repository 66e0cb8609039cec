// What find and its kin give to scripts. Documented in docs/scripting.md.
export default function (native, nameFunctions, helpers) {
    var text = helpers.text;
    var show = helpers.show;
    var isInt32 = helpers.isInt32;
    var milliseconds = helpers.milliseconds;
    var knownOptions = helpers.knownOptions;
    var requireName = helpers.requireName;

    var defaultTimeout = 10000;
    var pollMs = 20;
    var maxHoldMs = 30000;

    // The numbers are the toolkit's.
    var buttons = {left: 1, right: 2, middle: 4, back: 8, forward: 16};
    var modifierKeys = {shift: 0x02000000, ctrl: 0x04000000, alt: 0x08000000, meta: 0x10000000};

    function keyOf(table, value, what) {
        var key = text(value).trim().toLowerCase();
        if (!Object.prototype.hasOwnProperty.call(table, key))
            throw new TypeError(what + " has to be one of " + Object.keys(table).join(", ") + ", not '"
                                + text(value) + "'");
        return table[key];
    }

    function modifiersOf(value) {
        return text(value).split("+").reduce(function (all, key) {
            return all | keyOf(modifierKeys, key, "a modifier");
        }, 0);
    }

    function hasPlace(options) {
        if (options.x === undefined && options.y === undefined)
            return false;
        if (!isInt32(options.x) || !isInt32(options.y))
            throw new TypeError("a place has to be two whole numbers x and y");
        return true;
    }

    // A place and options as the application takes them.
    function mouseOptions(options, more) {
        var known = knownOptions(options, ["x", "y", "button", "modifiers"].concat(more || []));
        var result = {};
        if (hasPlace(known)) {
            result.x = known.x;
            result.y = known.y;
        }
        if (known.hold !== undefined && !(isInt32(known.hold) && known.hold >= 0 && known.hold <= maxHoldMs))
            throw new TypeError("option 'hold' has to be a whole number of milliseconds up to " + maxHoldMs);
        if (known.hold !== undefined)
            result.hold = known.hold;
        if (known.button !== undefined)
            result.button = keyOf(buttons, known.button, "option 'button'");
        if (known.modifiers !== undefined)
            result.modifiers = modifiersOf(known.modifiers);
        return result;
    }

    function refuseMore(values, count, message) {
        if (values.length > count)
            throw new TypeError(message);
    }

    function copyOf(options, what) {
        if (options !== undefined && (typeof options !== "object" || options === null))
            throw new TypeError(what + " takes options in an object, such as {x: 1, y: 2}");
        return Object.assign({}, options);
    }

    // Nothing, a place, options, or both.
    function clickArguments(values, more) {
        var list = Array.from(values);
        var place = {};
        if (typeof list[0] === "number") {
            place = {x: list[0], y: list[1]};
            hasPlace(place);
            list = list.slice(2);
        }
        if (list.length > 1 || (list.length === 1 && (typeof list[0] !== "object" || list[0] === null)))
            throw new TypeError("click takes nothing or the two whole numbers x and y, and options");
        return mouseOptions(Object.assign({}, list[0], place), more);
    }

    // What objects and items have in common.
    var mouse = {
        click: function () {
            this.useMouse("click", clickArguments(arguments, ["hold"]));
        },
        doubleClick: function () {
            this.useMouse("doubleClick", clickArguments(arguments));
        },
        rightClick: function () {
            this.useMouse("click", Object.assign(clickArguments(arguments, ["hold"]), {button: buttons.right}));
        },
        hover: function () {
            this.useMouse("hover", clickArguments(arguments));
        },
        // Steps toward the user.
        wheel: function (steps, options) {
            if (typeof steps !== "number" || !isFinite(steps))
                throw new TypeError("wheel takes the number of steps, less than 0 for away from the user");
            refuseMore(arguments, 2, "wheel takes the number of steps, and options");
            var all = copyOf(options, "wheel");
            var isHorizontal = Boolean(all.horizontal);
            delete all.horizontal;
            var result = mouseOptions(all);
            result[isHorizontal ? "right" : "down"] = steps;
            this.useMouse("wheel", result);
        },
        drag: function (to, options) {
            refuseMore(arguments, 2, "drag takes where to, and options");
            var all = copyOf(options, "drag");
            var end = copyOf(all.to, "option 'to' of drag");
            var via = all.via;
            delete all.to;
            delete all.via;
            if (via !== undefined && !(typeof via === "string" && /^-?\d{1,6},-?\d{1,6}( -?\d{1,6},-?\d{1,6})*$/.test(via) && hasPlace(all)))
                throw new TypeError("option 'via' of drag takes the places on the way, such as '10,5 20,40', "
                                    + "together with the place {x: 1, y: 2} where it begins");
            if (!(to instanceof FoundObject || to instanceof Item)) {
                if (typeof to !== "object" || to === null || !hasPlace(to))
                    throw new TypeError("drag takes an object, an item, or a place {x: 1, y: 2}");
                end = knownOptions(to, ["x", "y"]);
                to = this;
            }
            var target = mouseOptions(end);
            target.object = this.source.targetId(to.source);
            if (to instanceof Item) {
                to.wait();
                target.item = to.selector;
            }
            var result = mouseOptions(all);
            result.to = target;
            if (via !== undefined)
                result.via = via;
            this.useMouse("drag", result);
        },
        toString: function () {
            return this.name;
        },
        toJSON: function () {
            return this.name;
        }
    };

    // Two are the same when they were found by the same name.
    function FoundObject(name, object) {
        this.name = name;
        Object.defineProperty(this, "source", {value: object});
    }

    FoundObject.prototype = Object.assign({}, mouse, {
        useMouse: function (gesture, options) {
            this.source.useMouse(gesture, options);
        },
        get: function (property) {
            refuseMore(arguments, 1, "get takes a property");
            return this.source.get(requireName(property, "a property"));
        },
        set: function (property, value) {
            if (value === undefined || arguments.length > 2)
                throw new TypeError("set takes a property and its value");
            this.source.set(requireName(property, "a property"), value);
        },
        type: function (keys) {
            refuseMore(arguments, 1, "type takes the keys in one text");
            this.source.type(text(keys));
        },
        typePassword: function (variable) {
            refuseMore(arguments, 1, "typePassword takes the name of an environment variable");
            this.source.typePassword(requireName(variable, "an environment variable"));
        },
        close: function () {
            refuseMore(arguments, 0, "close takes nothing");
            this.source.close();
        },
        exists: function () {
            return this.source.exists();
        },
        screenshot: function (file) {
            refuseMore(arguments, 1, "screenshot takes the file of a picture");
            this.source.screenshot(helpers.targetPath(requireName(file, "the file of a picture")));
        },
        waitFor: function (property, value, timeout) {
            refuseMore(arguments, 3, "waitFor takes a property, its value, and a timeout");
            var source = this.source;
            var path = requireName(property, "a property");
            var last;
            var holds = poll(function () {
                last = source.get(path);
                return helpers.isSame(last, value);
            }, milliseconds(timeout, defaultTimeout));
            if (!holds)
                throw new Error(this.name + ": property '" + path + (source.isSecret(path)
                    ? "', which is hidden, is not what it was to be"
                    : "' is " + show(last) + ", not " + show(value)));
        },
        waitUntilGone: function (timeout) {
            refuseMore(arguments, 1, "waitUntilGone takes a timeout");
            var source = this.source;
            if (!poll(function () { return !isShown(source); }, milliseconds(timeout, defaultTimeout)))
                throw new Error(this.name + " is still there");
        },
        item: function (textOrRow, columnOrOptions, timeout) {
            refuseMore(arguments, isInt32(textOrRow) ? 3 : 2, "item takes a text and options, or row and column "
                       + "and a timeout");
            if (isInt32(textOrRow)) {
                if (!isInt32(columnOrOptions))
                    throw new TypeError("item takes a text, or the whole numbers row and column");
                return new Item(this, [textOrRow, columnOrOptions], milliseconds(timeout, defaultTimeout));
            }
            var path = requireName(textOrRow, "an item");
            if (columnOrOptions === undefined || typeof columnOrOptions === "number")
                return new Item(this, [path], milliseconds(columnOrOptions, defaultTimeout));
            var options = knownOptions(columnOrOptions, ["column", "occurrence", "timeout"]);
            return new Item(this, [path, {column: index(options.column, "column"),
                                          occurrence: index(options.occurrence, "occurrence")}],
                            milliseconds(options.timeout, defaultTimeout));
        }
    });

    Object.defineProperty(FoundObject.prototype, "properties", {
        get: function () {
            return this.source.properties();
        }
    });

    Object.defineProperty(FoundObject.prototype, "children", {
        get: function () {
            return asObjects(this.source.children());
        }
    });

    function index(value, what) {
        if (value === undefined)
            return 0;
        if (!isInt32(value) || value < 0)
            throw new TypeError("option '" + what + "' has to be a whole number");
        return value;
    }

    // Objects without that property are there as long as they exist.
    function isShown(source) {
        return source.exists() && source.isVisible();
    }

    function asObjects(found) {
        return Array.from(found).map(function (object) {
            return new FoundObject(object.name, object);
        });
    }

    // Whether it held before the time was over.
    function poll(condition, timeout) {
        var end = native.clock() + timeout;
        for (;;) {
            if (condition())
                return true;
            var left = end - native.clock();
            if (left <= 0)
                return false;
            native.pause(Math.min(pollMs, Math.ceil(left)));
        }
    }

    // A part of an object that is no object of its own.
    function Item(owner, selector, timeout) {
        this.name = owner.name + " item " + show(selector.length === 1 || typeof selector[1] === "object"
                                                 ? selector[0] : selector);
        Object.defineProperty(this, "source", {value: owner.source});
        Object.defineProperty(this, "selector", {value: selector});
        Object.defineProperty(this, "timeout", {value: timeout});
    }

    Item.prototype = Object.assign({}, mouse, {
        wait: function () {
            this.source.waitForItem(this.selector, this.timeout);
        },
        useMouse: function (gesture, options) {
            this.wait();
            this.source.useMouse(gesture, Object.assign({item: this.selector}, options));
        },
        edit: function (value) {
            refuseMore(arguments, 1, "edit takes the new text");
            this.source.useItem("edit", this.selector, text(value), this.timeout);
        },
        text: function () {
            return this.get("text");
        },
        get: function (property) {
            refuseMore(arguments, 1, "get takes a property");
            var all = this.properties;
            if (!Object.prototype.hasOwnProperty.call(all, property))
                throw new Error(this.name + ": there is no property '" + text(property) + "'; there are: "
                                + Object.keys(all).join(", "));
            return all[property];
        },
        exists: function () {
            return this.source.exists() && this.source.hasItem(this.selector);
        }
    });

    Object.defineProperty(Item.prototype, "properties", {
        get: function () {
            return this.source.itemProperties(this.selector, this.timeout);
        }
    });

    ["activate", "select", "expand", "collapse", "toggle", "check", "uncheck"].forEach(function (action) {
        Item.prototype[action] = function () {
            if (arguments.length !== 0)
                throw new TypeError(action + " of an item takes nothing");
            this.source.useItem(action, this.selector, "", this.timeout);
        };
    });

    return {
        FoundObject: FoundObject,
        find: function (objectName, timeout) {
            refuseMore(arguments, 2, "find takes an object name and a timeout");
            var wanted = nameFunctions.nameText(objectName);
            return new FoundObject(wanted, native.application().find(wanted, milliseconds(timeout, defaultTimeout)));
        },
        findAll: function (objectName) {
            refuseMore(arguments, 1, "findAll takes an object name");
            return asObjects(native.application().findAll(nameFunctions.nameText(objectName)));
        },
        poll: poll,
        waitFor: function (condition, timeout) {
            refuseMore(arguments, 2, "waitFor takes a function and a timeout");
            if (typeof condition !== "function")
                throw new TypeError("waitFor takes a function that is called until it is true");
            var value;
            poll(function () {
                value = condition();
                return value;
            }, milliseconds(timeout, defaultTimeout));
            return value;
        }
    };
}
