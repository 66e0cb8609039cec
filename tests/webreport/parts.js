// The parts of the pages that need no browser.
'use strict';

const path = require('node:path');

for (const part of [
    'dom',
    'outcomes',
    'format',
    'values',
    'textdiff',
    'repair',
    'model',
    'history',
    'filter',
    'address',
    'marks',
    'tableview',
    'failuretext',
])
    require(path.join(__dirname, '..', '..', 'webreport', 'script', part + '.js'));

module.exports = globalThis.morvexReport;
