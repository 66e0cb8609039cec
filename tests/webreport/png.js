// Writes small pictures.
'use strict';

const zlib = require('node:zlib');

function chunk(type, content) {
    const body = Buffer.concat([Buffer.from(type, 'latin1'), content]);
    const frame = Buffer.alloc(8);
    frame.writeUInt32BE(content.length, 0);
    frame.writeUInt32BE(crc32(body), 4);
    return Buffer.concat([frame.subarray(0, 4), body, frame.subarray(4)]);
}

function crc32(bytes) {
    let crc = ~0;
    for (const byte of bytes) {
        crc ^= byte;
        for (let bit = 0; bit < 8; ++bit) crc = (crc >>> 1) ^ (crc & 1 ? 0xedb88320 : 0);
    }
    return ~crc >>> 0;
}

function rowOf(width, y, color, square) {
    const row = Buffer.alloc(1 + width * 3);
    for (let x = 0; x < width; ++x) {
        const inside =
            x >= square.x &&
            x < square.x + square.size &&
            y >= square.y &&
            y < square.y + square.size;
        Buffer.from(inside ? [250, 250, 250] : color).copy(row, 1 + x * 3);
    }
    return row;
}

/// One colour, with a light square.
function solidPng(width, height, color, square) {
    const header = Buffer.alloc(13);
    header.writeUInt32BE(width, 0);
    header.writeUInt32BE(height, 4);
    header.set([8, 2, 0, 0, 0], 8);
    const rows = Array.from({ length: height }, (unused, y) => rowOf(width, y, color, square));
    return Buffer.concat([
        Buffer.from('89504e470d0a1a0a', 'hex'),
        chunk('IHDR', header),
        chunk('IDAT', zlib.deflateSync(Buffer.concat(rows))),
        chunk('IEND', Buffer.alloc(0)),
    ]);
}

module.exports = { solidPng };
