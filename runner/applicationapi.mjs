// The functions of scripts for applications and their contexts. Documented in docs/scripting.md.
export default function (native, global, helpers) {
    // One process of an application. The same number is the same object.
    function ApplicationContext(id) {
        Object.defineProperty(this, "id", {value: id});
        this.name = native.contexts().name(id);
        this.processId = native.contexts().processId(id);
        Object.freeze(this);
    }

    ApplicationContext.prototype = {
        isRunning: function () {
            return native.contexts().isRunning(this.id);
        },
        isFrozen: function (timeout) {
            return native.contexts().isFrozen(this.id, helpers.milliseconds(timeout, 1000));
        },
        output: function () {
            return native.contexts().standardOutput(this.id);
        },
        errorOutput: function () {
            return native.contexts().standardError(this.id);
        },
        toString: function () {
            return this.name;
        }
    };

    var known = new Map();

    function contextOf(id) {
        if (!known.has(id))
            known.set(id, new ApplicationContext(id));
        return known.get(id);
    }

    function currentContext() {
        if (native.contexts().current() < 0)
            throw new Error("no application is running");
        return contextOf(native.contexts().current());
    }

    // The last one that was current may have been stopped: what it has printed is still there.
    var last;

    function given(context, what) {
        if (context === undefined)
            return native.contexts().current() < 0 && last ? last : currentContext();
        if (!(context instanceof ApplicationContext))
            throw new TypeError(what + " takes what application.start or application.contexts gave");
        return context;
    }

    function waitForLaunch(timeout, name) {
        var id = native.contexts().waitForLaunch(helpers.milliseconds(timeout, 20000));
        if (id < 0)
            throw new Error(name + ": no application was started within the time");
        return last = contextOf(id);
    }

    function setCurrent(context) {
        var wanted = given(context, "application.setCurrent");
        if (!native.contexts().setCurrent(wanted.id))
            throw new Error("application.setCurrent: " + wanted + " has been stopped");
        last = wanted;
    }

    global.application = {
        start: function () {
            var error = native.application().start(Array.prototype.map.call(arguments, helpers.text));
            if (error !== "")
                throw new Error("application.start: " + error);
            return last = currentContext();
        },
        stop: function (context) {
            if (context !== undefined || native.contexts().current() >= 0)
                native.application().stop(given(context, "application.stop").id);
        },
        contexts: function () {
            return native.contexts().running().map(contextOf);
        },
        current: currentContext,
        setCurrent: setCurrent,
        waitForApplication: function (timeout) {
            return waitForLaunch(timeout, "application.waitForApplication");
        },
        output: function (context) {
            return given(context, "application.output").output();
        },
        errorOutput: function (context) {
            return given(context, "application.errorOutput").errorOutput();
        }
    };

    global.currentApplicationContext = currentContext;
    global.setApplicationContext = setCurrent;
    global.waitForApplicationLaunch = function (timeout) {
        return waitForLaunch(timeout, "waitForApplicationLaunch");
    };
}
