#include "test/datagrambuffer.h"

#include "test/child/rawentrystream.h"

#include <QtEndian>

#include <utility>

namespace Morvex {

void DatagramBuffer::append(const char *data, std::size_t size)
{
    pending.insert(pending.end(), data, data + size);
    std::size_t position = 0;
    while (pending.size() - position >= rawLengthSize) {
        const std::size_t length = qFromBigEndian<quint32>(pending.data() + position);
        if (pending.size() - position - rawLengthSize < length)
            break;
        const char *payload = pending.data() + position + rawLengthSize;
        datagrams.emplace_back(payload, payload + length);
        position += rawLengthSize + length;
    }
    pending.erase(pending.begin(), pending.begin() + static_cast<std::ptrdiff_t>(position));
}

void DatagramBuffer::convertToTestResults(TestResult *result, int retriesLeft)
{
    while (!datagrams.empty()) {
        const std::vector<char> datagram = std::move(datagrams.front());
        datagrams.pop_front();
        TestResult::Entry entry = decodeEntry(datagram.data(), datagram.size());
        if (entry.type == TestResult::START) {
            entry.type = TestResult::START_TEST_CASE;
            entry.info = entry.name;
            if (entry.retry == -1)
                entry.retry = retriesLeft;
        } else if (entry.type == TestResult::END) {
            entry.type = TestResult::END_TEST_CASE;
        }
        const LineInfo &place = entry.stack.empty() ? entry.line : entry.stack.front();
        if (place.lineNumber() > 0)
            lastPlace = place;
        result->processEntry(entry);
    }
}

} // namespace Morvex
