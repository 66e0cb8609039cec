// The command that runs failed test cases again.
(function (report) {
    'use strict';

    /// As a POSIX shell takes it for one word.
    function quoted(word) {
        return /^[\w@%+=:,./-]+$/.test(word) ? word : "'" + word.replace(/'/g, "'\\''") + "'";
    }

    /// The directory of a suite; empty when the location names none.
    function directoryOf({ uri = '' }) {
        return /^file:/.test(uri) ? report.format.locationText(uri) : '';
    }

    function commandFor({ node: root }, testCases) {
        const names = testCases.flatMap((one) => ['--testcase', quoted(one.raw.name)]);
        const directory = directoryOf(root.raw);
        if (root.testCase || !directory || names.length === 0) return [];
        return [['morvexrunner', ...names, quoted(directory)].join(' ')];
    }

    /// One line for each suite, of the test cases that failed in the node, or round it; empty when
    /// there are none.
    function rerunCommand(run, node) {
        const within = node.testCase ? [node.testCase] : report.shown.testCasesIn(run, node);
        const failed = within.filter(report.model.isFailed);
        return run.parts
            .flatMap((part) =>
                commandFor(
                    part,
                    failed.filter((one) => report.shown.partOf(run, one) === part),
                ),
            )
            .join('\n');
    }

    report.quoted = quoted;
    report.rerunCommand = rerunCommand;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
