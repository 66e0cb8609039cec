// The parts of the pages that need no browser.
'use strict';

const path = require('node:path');

for (const part of [
    'invisibles',
    'dom',
    'outcomes',
    'format',
    'sequencediff',
    'pairing',
    'textdiff',
    'values',
    'repair',
    'walk',
    'model',
    'runs',
    'history',
    'tablerows',
    'searchtext',
    'filter',
    'criteria',
    'address',
    'navigation',
    'longtext',
    'marks',
    'failuretext',
    'highlight',
])
    require(path.join(__dirname, '..', '..', 'webreport', 'script', part + '.js'));

module.exports = globalThis.morvexReport;
