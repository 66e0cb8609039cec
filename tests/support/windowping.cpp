#include "support/windowping.h"

#include <QDeadlineTimer>
#include <QThread>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace MorvexTest {
namespace {

struct Freed
{
    void operator()(void *memory) const { std::free(memory); }
};

template <typename Reply>
using Owned = std::unique_ptr<Reply, Freed>;

} // namespace

WindowPing::WindowPing(const QString &display, xcb_window_t window)
    : m_connection(xcb_connect(display.toLatin1().constData(), nullptr))
    , m_window(window)
    , m_protocols(atom("WM_PROTOCOLS"))
    , m_ping(atom("_NET_WM_PING"))
{
    if (xcb_connection_has_error(m_connection) != 0)
        return;
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    // Qt sends its answers to those who have asked for the first, others for the second.
    const uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection, m_root, XCB_CW_EVENT_MASK, &events);
}

WindowPing::~WindowPing()
{
    xcb_disconnect(m_connection);
}

xcb_atom_t WindowPing::atom(const char *name)
{
    const auto request =
        xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(std::strlen(name)), name);
    const Owned<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(m_connection, request, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

bool WindowPing::isAnswered()
{
    ask();
    for (const QDeadlineTimer deadline(30000); !deadline.hasExpired(); QThread::msleep(2)) {
        if (takeAnswer() || !isThere())
            return true;
    }
    return false;
}

bool WindowPing::isThere()
{
    const auto request = xcb_get_window_attributes(m_connection, m_window);
    const Owned<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(m_connection, request, nullptr));
    return reply != nullptr;
}

void WindowPing::ask()
{
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_window;
    message.type = m_protocols;
    message.data.data32[0] = m_ping;
    message.data.data32[1] = ++m_number;
    message.data.data32[2] = m_window;
    xcb_send_event(m_connection, 0, m_window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(m_connection);
}

// Programs send the message back, to the root window.
bool WindowPing::takeAnswer()
{
    while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
        const auto *message = reinterpret_cast<const xcb_client_message_event_t *>(event.get());
        if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE && message->window == m_root &&
            message->type == m_protocols && message->data.data32[0] == m_ping &&
            message->data.data32[1] == m_number && message->data.data32[2] == m_window)
            return true;
    }
    return false;
}

} // namespace MorvexTest
