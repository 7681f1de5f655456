#include <Base/Signal/AsyncSignal.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>

namespace {

class Listener : public kxRTB::SignalClient {
public:
    void onText(const std::string& text) {
        received = text;
        thread = std::this_thread::get_id();
    }

    std::string received;
    std::thread::id thread;
};

} // namespace

TEST(AsyncSignal, EmitsACopyOfItsArgumentOnTheThreadThatCallsEmit) {
    kxRTB::SignalArg<const std::string&> changed;
    Listener listener;
    changed.connect(&listener, &Listener::onText);

    std::string text = "first";
    std::unique_ptr<kxRTB::AsyncSignal> pending =
        std::make_unique<kxRTB::AsyncSignalArg<kxRTB::SignalArg<const std::string&>>>(changed,
                                                                                      text);
    text = "changed since";

    std::thread receiver([&] { pending->emit(); });
    receiver.join();
    EXPECT_EQ(listener.received, "first");
    EXPECT_NE(listener.thread, std::this_thread::get_id());
}
