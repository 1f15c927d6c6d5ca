// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/SoundWorker.h"

#include <canberra.h>

#include <atomic>
#include <chrono>
#include <deque>
#include <utility>

namespace {

/// How long the end of the program waits for a sound server that does not answer.
constexpr std::chrono::milliseconds patience{500};

/// Without a file, only to connect.
struct Request
{
    QByteArray file;
    std::promise<bool> answer;
    std::function<void()> onFailure;
};

/// The connection to the sound server. Worker thread only.
class Context
{
public:
    explicit Context(SoundWorker::Identity identity)
        : m_identity(std::move(identity))
    {
    }
    ~Context() { close(); }
    Context(const Context &) = delete;
    Context &operator=(const Context &) = delete;

    bool open()
    {
        if (m_context) {
            return true;
        }
        if (ca_context_create(&m_context) != CA_SUCCESS) {
            m_context = nullptr;
            return false;
        }
        ca_context_change_props(m_context, CA_PROP_APPLICATION_ID,
                                m_identity.applicationId.constData(), CA_PROP_APPLICATION_NAME,
                                m_identity.name.constData(), CA_PROP_APPLICATION_ICON_NAME,
                                m_identity.iconName.constData(), nullptr);
        if (ca_context_open(m_context) != CA_SUCCESS) {
            close();
            return false;
        }
        return true;
    }

    bool play(const QByteArray &file)
    {
        if (!open()) {
            return false;
        }
        int result = start(file);
        if (result != CA_SUCCESS && result != CA_ERROR_NOTFOUND && result != CA_ERROR_CORRUPT) {
            // The server was restarted since.
            close();
            result = open() ? start(file) : result;
        }
        return result == CA_SUCCESS;
    }

private:
    int start(const QByteArray &file)
    {
        return ca_context_play(m_context, 0, CA_PROP_MEDIA_FILENAME, file.constData(),
                               CA_PROP_MEDIA_ROLE, "event", nullptr);
    }

    void close()
    {
        if (m_context) {
            ca_context_destroy(m_context);
            m_context = nullptr;
        }
    }

    SoundWorker::Identity m_identity;
    ca_context *m_context = nullptr;
};

} // namespace

struct SoundWorker::State
{
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Request> requests;
    bool ending = false;
    std::atomic<Connection> connection = Connection::Unknown;

    void run(const Identity &identity)
    {
        Context context(identity);
        const auto connect = [this, &context] {
            const bool open = context.open();
            connection = open ? Connection::Up : Connection::Down;
            return open;
        };
        connect();
        while (const auto request = next()) {
            const bool done = request->file.isEmpty() ? connect() : context.play(request->file);
            if (!done && !request->file.isEmpty()) {
                connect();
                if (!isEnding()) {
                    request->onFailure();
                }
            }
            request->answer.set_value(done);
        }
    }

    bool isEnding()
    {
        const std::lock_guard lock(mutex);
        return ending;
    }

    std::future<bool> post(Request request)
    {
        auto answer = request.answer.get_future();
        {
            const std::lock_guard lock(mutex);
            requests.push_back(std::move(request));
        }
        changed.notify_one();
        return answer;
    }

    std::unique_ptr<Request> next()
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return ending || !requests.empty(); });
        if (ending) {
            return nullptr;
        }
        auto request = std::make_unique<Request>(std::move(requests.front()));
        requests.pop_front();
        return request;
    }
};

SoundWorker::SoundWorker(const Identity &identity)
    : m_state(std::make_shared<State>())
{
    std::promise<void> end;
    m_end = end.get_future();
    m_thread = std::thread([state = m_state, identity, ended = std::move(end)]() mutable {
        state->run(identity);
        ended.set_value();
    });
}

SoundWorker::~SoundWorker()
{
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->ending = true;
    }
    m_state->changed.notify_one();
    if (m_end.wait_for(patience) == std::future_status::ready) {
        m_thread.join();
    } else {
        m_thread.detach();
    }
}

SoundWorker::Connection SoundWorker::connection() const
{
    return m_state->connection;
}

std::future<bool> SoundWorker::connect()
{
    return m_state->post({});
}

void SoundWorker::play(const QByteArray &file, std::function<void()> onFailure)
{
    m_state->post({file, {}, std::move(onFailure)});
}
