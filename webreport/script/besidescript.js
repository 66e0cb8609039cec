// What the report keeps of a file beside it: a script of its name and ".js", which calls a function
// of the page. A page that was opened from a file can load scripts only.
(function (report) {
    'use strict';

    /// Returns a function that gives a promise of what the script beside a link passes to the
    /// function `name`, null when there is none.
    report.scriptBeside = function (name) {
        const waiting = new Map();

        globalThis[name] = function (content) {
            const done = waiting.get(document.currentScript);
            if (done) done(content);
        };

        return function load(link) {
            const script = document.createElement('script');
            return new Promise((resolve) => {
                waiting.set(script, resolve);
                script.addEventListener('error', () => resolve(null));
                script.addEventListener('load', () => resolve(null));
                script.src = link + '.js';
                document.head.append(script);
            }).finally(() => {
                waiting.delete(script);
                script.remove();
            });
        };
    };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
