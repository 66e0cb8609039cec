#!/usr/bin/python3
"""A result server for tests: uploadserver.py BEHAVIOUR LOG [CERTIFICATE KEY]

Prints its port, serves until it is killed, and writes each message that it gets to LOG: a JSON array
of the fields a line. Content is written as its size and its SHA-256 sum. A message that is not just
as its fields say is logged as an "error".
"""
import asyncio, hashlib, http, json, ssl, sys
import websockets

behaviour, log_path = sys.argv[1:3]
log = open(log_path, "w", buffering=1)
waits = 0


class Message:
    def __init__(self, data):
        self.data, self.position, self.fields = data, 0, []

    def take(self, end):
        if not 0 <= end <= len(self.data):
            raise ValueError("cut off")
        part, self.position = self.data[self.position:end], end
        return part

    def number(self):
        end = self.position
        while end < len(self.data) and self.data[end:end + 1] in b"-0123456789":
            end += 1
        text = self.take(end)
        if str(int(text)).encode() != text:
            raise ValueError("padded number")
        self.fields.append(int(text))
        return int(text)

    def skip(self, byte):
        if self.take(self.position + 1) != byte:
            raise ValueError("no %r at %d" % (byte, self.position - 1))

    def bytes(self):
        self.skip(b"|")
        size = self.number()
        self.fields.pop()
        self.skip(b"|")
        return self.take(self.position + size)

    def read(self, kinds):
        for kind in kinds:
            if kind == "n":
                self.skip(b"|")
                self.number()
            elif kind == "s":
                self.fields.append(self.bytes().decode("utf-8"))
            elif kind == "c":
                content = self.bytes()
                self.fields += [len(content), hashlib.sha256(content).hexdigest()]
            elif kind == "\n":
                self.skip(b"\n")

    def repeat(self, kinds):
        self.read("n")
        for _ in range(self.fields[-1]):
            self.read(kinds)

    def decode(self):
        code = self.number()
        self.read("n")
        if code == 5:
            self.read("ss")
            self.repeat("s")
            self.read("s\n")
        elif code == 105:
            self.read("nsssnssss")
            self.repeat("sn")
            self.read("ssnssn\n")
        elif code == 201 or code == 400:
            self.read("sc")
        elif code == 401:
            self.read("sn")
        elif code != 301:
            raise ValueError("code %d" % code)
        if self.position != len(self.data):
            raise ValueError("bytes after the end")
        return self.fields


def answer(serial, message="", code=0):
    return json.dumps({"message": message, "code": code, "serial": serial}).encode()


async def respond(socket, fields):
    code, serial = fields[:2]
    is_entry = code == 105
    global waits
    if behaviour == "never":
        return
    if behaviour == "forgetful" and is_entry and fields[3] == "END_TEST_CASE":
        waits += 1
        if waits == 1:
            return
    if behaviour == "once":
        waits += is_entry
        if is_entry and waits != 1:
            return
        await asyncio.sleep(0.5 * is_entry)
    if behaviour == "late" and (code == 301 or str(fields[3]).startswith("END")):
        await asyncio.sleep(0.1)
    if behaviour == "text":
        return await socket.send(answer(serial).decode())
    if behaviour == "shape" and is_entry:
        for wrong in (b"", b"[]", b"7", b"{", b'{"serial": "x", "code": [], "message": {}}', b"[" * 100000):
            await socket.send(wrong)
    if behaviour == "large" and fields[3] == "END_TEST_CASE":
        await socket.send(answer(serial, "x" * 10_000_000))
    elif behaviour == "code" and is_entry:
        await socket.send(answer(serial, "no space", 28))
    elif behaviour == "early" and is_entry or code == 301:
        await socket.send(answer(serial, "Done"))
    elif behaviour == "close" and is_entry:
        await socket.close()
    elif behaviour == "abort" and is_entry:
        socket.transport.abort()
    else:
        await socket.send(answer(serial))


async def serve(socket, path):
    log.write(json.dumps(["path", path]) + "\n")
    try:
        async for data in socket:
            if behaviour == "stall":
                await asyncio.sleep(1000)
            try:
                fields = Message(data).decode()
            except Exception as error:
                fields = ["error", 0, str(error), repr(data[:200])]
            log.write(json.dumps(fields) + "\n")
            await respond(socket, fields)
    except websockets.ConnectionClosed:
        pass
    log.write('["closed"]\n')


async def refuse(path, headers):
    if behaviour == "refuse":
        return http.HTTPStatus.FORBIDDEN, [], b"no\n"
    if behaviour == "mute":
        await asyncio.sleep(1000)


async def main():
    tls = None
    if len(sys.argv) > 3:
        tls = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        tls.load_cert_chain(sys.argv[3], sys.argv[4])
    limits = {"max_size": None, "ping_interval": None, "compression": None, "max_queue": 1}
    async with websockets.serve(serve, "127.0.0.1", 0, process_request=refuse, ssl=tls, **limits) as server:
        print(server.sockets[0].getsockname()[1], flush=True)
        await asyncio.Future()


asyncio.run(main())
