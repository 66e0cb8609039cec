#pragma once

#include "test/testresult.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

// What a runner sends: binary messages of fields with "|" between them. The first field is the code
// of the message, the second its serial number, counted from 0. Numbers are decimal. A text is its
// number of bytes, "|" and as many bytes of UTF-8.
//
//     5    project, token, number of labels, each label, batch                     first of all
//     105  the entry, see EntryMessage                                             at any time
//     201  name, number of bytes, the bytes: a file of the entry before            after an entry
//     301  nothing: the end of the upload
//     400  name of a video, number of bytes, the bytes to write at its position
//     401  name of a video, position to go to
//
// The messages 5 and 105 end with a line feed. The answer to each is a binary message too, a JSON
// object: "serial" of what is answered, "code" (0, anything else ends the upload), "message" (shown
// to the user). "Done" answers the end of the upload.

enum MessageCode {
    SessionCode = 5,
    EntryCode = 105,
    FileCode = 201,
    EndCode = 301,
    VideoDataCode = 400,
    VideoSeekCode = 401
};

/// Reads the fields of a message one after the other. Once a field is not what it should be, all
/// that follow are empty.
class MessageReader
{
public:
    explicit MessageReader(const QByteArray &message)
        : m_message(message)
    {
    }

    qint64 number();
    int count(int bytesEach);
    QByteArray bytes();
    /// With the NULs that a client may have put into it.
    QString text();

    bool isOk() const { return m_isOk; }
    /// Nothing but @p end is left.
    bool isAtEnd(const char *end) const;

private:
    void skipSeparator();

    QByteArray m_message;
    int m_position = 0;
    bool m_isOk = true;
};

struct SessionMessage
{
    QString project;
    QString token;
    QStringList labels;
    QString batch;
};

/// A place in a script: a URI and a line, -1 for none.
struct Place
{
    QString uri;
    int line = -1;
};

/// The fields of an entry in the order of the message.
struct EntryMessage
{
    /// Milliseconds since 1970.
    qint64 time = 0;
    Morvex::TestResult::ResultType type = Morvex::TestResult::NONE;
    QString name;
    Place script;
    QString summary;
    QString message;
    QString details;
    QString info;
    /// Innermost first; empty for a stack of one frame, which is the place itself.
    std::vector<Place> stack;
    /// That of a verification or of an attachment.
    QString kind;
    Place location;
    /// The names of files that follow.
    QString resource;
    QString screenshot;
    int retry = -1;
};

// Nothing for a message that has another form. The code and the serial number are read already.
std::optional<SessionMessage> readSession(MessageReader &reader);
std::optional<EntryMessage> readEntry(MessageReader &reader);
