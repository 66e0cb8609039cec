// Reports that the real runner writes.
'use strict';

const { spawnSync } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { repair } = require('./parts');

const prefix = path.join(process.env.MORVEX_WEBREPORT_PAGES || '/nowhere', '..', '..');
const runner = path.join(prefix, 'bin', 'morvexrunner');

/// Why the runner can't be asked; empty when it can.
const missing = fs.existsSync(runner) ? '' : 'no runner: run these tests by ctest';

/// A directory for suites and reports. Scripts see the variable NIGHT.
class Workshop {
    constructor() {
        this.directory = fs.mkdtempSync(path.join(os.tmpdir(), 'webreport-runs-'));
        this.report = this.path('report');
    }

    path(...names) {
        return path.join(this.directory, ...names);
    }

    /// `scripts` has the script of each test case by its name.
    suite(name, scripts) {
        fs.rmSync(this.path(name), { recursive: true, force: true });
        for (const [testCase, script] of Object.entries(scripts)) {
            fs.mkdirSync(this.path(name, testCase), { recursive: true });
            fs.writeFileSync(this.path(name, testCase, 'script.js'), script);
        }
        fs.writeFileSync(this.path(name, 'suite.conf'), 'VERSION = 3\nLANGUAGE = JavaScript\n');
    }

    /// Returns the exit status and what the runner printed.
    call(...words) {
        const env = { ...process.env, MORVEX_PREFIX: prefix, QT_QPA_PLATFORM: 'offscreen' };
        env.MORVEX_USER_SETTINGS_DIR = this.path('settings');
        const { status, stdout, stderr } = spawnSync(runner, words, { env, encoding: 'utf8' });
        return { status, text: stdout + stderr };
    }

    run(name, night, ...options) {
        const target = ['--reportgen', 'html,' + this.report, '--envvar', 'NIGHT=' + night];
        return this.call(...target, ...options, this.path(name));
    }

    dataFile(report = this.report) {
        return path.join(report, 'data', 'results-v1.js');
    }

    documents(report = this.report) {
        return repair.readDataFile(fs.readFileSync(this.dataFile(report), 'utf8')).runs;
    }

    remove() {
        fs.rmSync(this.directory, { recursive: true });
    }
}

module.exports = { missing, Workshop };
