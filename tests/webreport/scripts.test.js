'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const test = require('node:test');

const pages = path.join(__dirname, '..', '..', 'webreport');
const listed = [
    ...fs.readFileSync(path.join(pages, 'index.html'), 'utf8').matchAll(/src="(script\/\w+\.js)"/g),
].map((match) => match[1]);
const sources = new Map(
    listed.map((file) => [file, fs.readFileSync(path.join(pages, file), 'utf8')]),
);

test('The page loads each script once', () =>
    assert.deepEqual(
        [...listed].sort(),
        fs.readdirSync(path.join(pages, 'script')).map((file) => 'script/' + file),
    ));

/// Names that a script takes while it is loaded: at the outermost level of its function.
function takenAtOnce(source) {
    const outermost = source
        .split('\n')
        .filter((line) => /^ {4}\S/.test(line) && !/^ {4}\/\//.test(line));
    const text = outermost.join('\n');
    const names = [...text.matchAll(/\breport\.(\w+)(?! =[^=])\b/g)].map((match) => match[1]);
    for (const [, list] of source.matchAll(/^ {4}const \{([^}]*)\} = report;/gm))
        names.push(...list.split(',').map((name) => name.trim().split(':')[0]));
    return names.filter(Boolean);
}

function defined(source) {
    return [...source.matchAll(/^ {4}report\.(\w+) =/gm)].map((match) => match[1]);
}

test('Each script is loaded after those that it needs', () => {
    const known = new Set();
    const all = new Set([...sources.values()].flatMap(defined));
    for (const [file, source] of sources) {
        const own = defined(source);
        for (const name of takenAtOnce(source))
            assert.ok(known.has(name) || own.includes(name), file + ' needs ' + name + ' earlier');
        for (const [, name] of source.matchAll(/\breport\.(\w+)/g))
            assert.ok(all.has(name), file + ' uses ' + name + ', which no script defines');
        own.forEach((name) => known.add(name));
    }
});
