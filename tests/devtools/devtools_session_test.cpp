#include "libcef/devtools/devtools_session.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <QJsonArray>
#include <atomic>
#include <map>
#include <memory>

#include "devtools/devtools_test_support.h"

using cefengine::DevToolsReply;
using cefengine::DevToolsSession;
using namespace devtools_test;

namespace {

// Never settles, so the command stays pending.
const QJsonObject kHangingEvaluate{{"expression", "new Promise(() => {})"}, {"awaitPromise", true}};

class DevToolsSessionTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string error;
    ASSERT_TRUE(session_->start(chromiumOptions(profile_), &error)) << error;
  }

  // Creates a page and attaches to it; returns its session id.
  QString attachPage() {
    const DevToolsReply target =
        session_->sendCommandSync("Target.createTarget", {{"url", "about:blank"}}, QString(), 10s);
    return session_
        ->sendCommandSync("Target.attachToTarget",
                          {{"targetId", target.result["targetId"]}, {"flatten", true}}, QString(), 10s)
        .result["sessionId"]
        .toString();
  }

  int evaluate(const QString& sessionId, const QString& expression) {
    const DevToolsReply reply = session_->sendCommandSync(
        "Runtime.evaluate", {{"expression", expression}, {"returnByValue", true}}, sessionId, 10s);
    return reply.result["result"].toObject()["value"].toInt(-1);
  }

  // Collects kDisconnectedEvent's params.
  void watchDisconnects() {
    session_->subscribeAll([this](const QString& method, const QJsonObject& params, const QString&) {
      if (method == DevToolsSession::kDisconnectedEvent) disconnects_.push_back(params);
    });
  }

  QTemporaryDir profile_;
  TestDispatcher queue_;
  std::unique_ptr<DevToolsSession> session_ = std::make_unique<DevToolsSession>(queue_.dispatcher());
  std::vector<QJsonObject> disconnects_;
};

}  // namespace

TEST_F(DevToolsSessionTest, AnswersFromBrowserAndPageAndStopsLeavingNothing) {
  const DevToolsReply version = session_->sendCommandSync("Browser.getVersion", {}, QString(), 10s);
  ASSERT_TRUE(version.ok());
  EXPECT_TRUE(version.result["product"].toString().startsWith("HeadlessChrome"));
  const DevToolsReply unknown = session_->sendCommandSync("Bogus.method", {}, QString(), 10s);
  EXPECT_EQ(unknown.error["code"].toInt(), -32601);

  const QString page = attachPage();
  ASSERT_FALSE(page.isEmpty());
  EXPECT_EQ(evaluate(page, "1+1"), 2);
  // Without the session id the command goes to the browser, which has no Runtime.
  EXPECT_EQ(evaluate(QString(), "1+1"), -1);

  std::string error;
  EXPECT_FALSE(session_->start(chromiumOptions(profile_), &error));
  EXPECT_TRUE(session_->isConnected());
  // Chromium's helpers share its group.
  const pid_t pid = session_->pid();
  EXPECT_GT(liveProcesses(0, pid).size(), 1u);
  watchDisconnects();
  session_->stop();
  ASSERT_TRUE(queue_.runUntil([&] { return !disconnects_.empty(); }));
  // A clean exit: nothing had to be killed.
  EXPECT_EQ(disconnects_[0]["exitCode"].toInt(), 0) << disconnects_[0]["status"].toString().toStdString();
  EXPECT_EQ(waitpid(pid, nullptr, WNOHANG), -1);  // reaped already
  EXPECT_TRUE(waitUntil([&] { return liveProcesses(0, pid).empty(); }));
}

TEST_F(DevToolsSessionTest, EventsReachTheirSubscribersInOrder) {
  const QString page = attachPage();
  std::vector<int> logged;
  int strayEvents = 0;
  session_->subscribe(page, [&](const QString& method, const QJsonObject& params, const QString&) {
    if (method == "Runtime.consoleAPICalled")
      logged.push_back(params["args"].toArray()[0].toObject()["value"].toInt());
  });
  session_->subscribe("other-session",
                      [&](const QString&, const QJsonObject&, const QString&) { ++strayEvents; });
  const int removed =
      session_->subscribe(page, [&](const QString&, const QJsonObject&, const QString&) { ++strayEvents; });
  session_->unsubscribe(removed);

  bool evaluated = false;
  session_->sendCommand("Runtime.enable", {}, page, {});
  session_->sendCommand("Runtime.evaluate", {{"expression", "for (let i = 1; i <= 20; ++i) console.log(i)"}},
                        page,
                        [&](const QJsonObject&, const QJsonObject& error) { evaluated = error.isEmpty(); });
  ASSERT_TRUE(queue_.runUntil([&] { return logged.size() == 20 && evaluated; }));
  for (int i = 0; i < 20; ++i) EXPECT_EQ(logged[i], i + 1);
  EXPECT_EQ(strayEvents, 0);
}

TEST_F(DevToolsSessionTest, ConcurrentCommandsGetTheirOwnReplies) {
  const QString page = attachPage();
  std::mutex mutex;
  std::map<int, int> answers;  // the number evaluated -> the value that came back
  std::atomic<int> syncMismatches{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      for (int n = t * 1000; n < t * 1000 + 25; ++n) {
        session_->sendCommand("Runtime.evaluate",
                              {{"expression", QString::number(n)}, {"returnByValue", true}}, page,
                              [&, n](const QJsonObject& result, const QJsonObject&) {
                                std::lock_guard<std::mutex> lock(mutex);
                                answers[n] = result["result"].toObject()["value"].toInt(-1);
                              });
        syncMismatches += evaluate(page, QString::number(-n)) != -n;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  ASSERT_TRUE(queue_.runUntil([&] { return answers.size() == 100; }));
  for (const auto& [n, value] : answers) EXPECT_EQ(value, n);
  EXPECT_EQ(syncMismatches, 0);
}

TEST_F(DevToolsSessionTest, KilledChromiumFailsEverythingPendingOnce) {
  const QString page = attachPage();
  watchDisconnects();
  std::vector<QJsonObject> errors;
  for (int i = 0; i < 3; ++i) {
    session_->sendCommand("Runtime.evaluate", kHangingEvaluate, page,
                          [&](const QJsonObject&, const QJsonObject& error) { errors.push_back(error); });
  }
  DevToolsReply blocked;
  std::thread waiter(
      [&] { blocked = session_->sendCommandSync("Runtime.evaluate", kHangingEvaluate, page, 60s); });
  EXPECT_EQ(
      session_->sendCommandSync("Runtime.evaluate", kHangingEvaluate, page, 200ms).error["code"].toInt(),
      DevToolsSession::kTimeoutCode);

  ASSERT_EQ(kill(session_->pid(), SIGKILL), 0);
  waiter.join();
  EXPECT_EQ(blocked.error["code"].toInt(), DevToolsSession::kDisconnectedCode);
  ASSERT_TRUE(queue_.runUntil([&] { return disconnects_.size() == 1 && errors.size() == 3; }));
  for (const QJsonObject& error : errors)
    EXPECT_EQ(error, QJsonObject({{"code", -32000}, {"message", "Chromium disconnected"}}));
  EXPECT_EQ(disconnects_[0]["signal"].toInt(), SIGKILL);
  EXPECT_FALSE(session_->isConnected());

  // From now on commands fail at once instead of waiting.
  EXPECT_EQ(session_->sendCommandSync("Browser.getVersion", {}, QString(), 60s).error["code"].toInt(),
            DevToolsSession::kDisconnectedCode);
  bool failed = false;
  session_->sendCommand("Browser.getVersion", {}, QString(),
                        [&](const QJsonObject&, const QJsonObject& error) { failed = !error.isEmpty(); });
  EXPECT_TRUE(queue_.runUntil([&] { return failed; }));
  session_->stop();
  queue_.runUntil([] { return false; }, 0ms);
  EXPECT_EQ(disconnects_.size(), 1u);
}

TEST_F(DevToolsSessionTest, CommandsEndByTheirDeadlineAndLateRepliesAreDropped) {
  const QString page = attachPage();
  // A renderer stuck in a loop answers nothing until it is stopped.
  session_->sendCommand("Runtime.evaluate", {{"expression", "while (true) {}"}}, page, {});
  std::vector<std::pair<int, QJsonObject>> replies;  // order of arrival
  for (int i = 0; i < 3; ++i) {
    session_->sendCommand(
        "Runtime.evaluate", {{"expression", QString::number(i)}, {"returnByValue", true}}, page,
        [&, i](const QJsonObject& result, const QJsonObject& error) {
          replies.emplace_back(i, error.isEmpty() ? result : error);
        },
        std::chrono::milliseconds(300 * (3 - i)));
  }
  // The browser target is not the page: it still answers at once.
  bool browserAnswered = false;
  session_->sendCommand("Browser.getVersion", {}, QString(),
                        [&](const QJsonObject&, const QJsonObject& error) { browserAnswered = error.isEmpty(); });
  ASSERT_TRUE(queue_.runUntil([&] { return replies.size() == 3 && browserAnswered; }, 5s));
  for (int k = 0; k < 3; ++k) {
    EXPECT_EQ(replies[k].first, 2 - k) << "the shortest deadline ends first";
    EXPECT_EQ(replies[k].second["code"].toInt(), DevToolsSession::kTimeoutCode);
  }
  // Unstuck, the page answers the expired commands too late: nobody hears of it.
  session_->sendCommandSync("Runtime.terminateExecution", {}, page, 5s);
  EXPECT_EQ(evaluate(page, "7"), 7);
  queue_.runUntil([] { return false; }, 200ms);
  EXPECT_EQ(replies.size(), 3u);
}

TEST_F(DevToolsSessionTest, NothingIsDeliveredAfterTheSessionIsGone) {
  bool called = false;
  session_->subscribeAll([&](const QString&, const QJsonObject&, const QString&) { called = true; });
  session_->sendCommand("Browser.getVersion", {}, QString(),
                        [&](const QJsonObject&, const QJsonObject&) { called = true; });
  session_.reset();
  queue_.runUntil([] { return false; }, 0ms);
  EXPECT_FALSE(called);
}

TEST(DevToolsSession, SkipsMalformedMessages) {
  QTemporaryDir dir;
  TestDispatcher queue;
  DevToolsSession session(queue.dispatcher());
  cefengine::ChromiumProcess::Options options;
  // After the first byte of input: garbage, an event and the reply to command 1.
  options.program = writeScript(dir,
                                "dd bs=1 count=1 <&3 >/dev/null 2>&1\n"
                                "printf 'not json\\000[1,2]\\000{\"result\":{}}\\000' >&4\n"
                                "printf '{\"method\":\"Fake.event\",\"params\":{\"n\":7}}\\000' >&4\n"
                                "printf '{\"id\":1,\"result\":{\"ok\":true}}\\000' >&4\n"
                                "exec cat <&3 >/dev/null");
  std::string error;
  ASSERT_TRUE(session.start(options, &error)) << error;
  int eventValue = 0;
  session.subscribe(QString(), [&](const QString& method, const QJsonObject& params, const QString&) {
    eventValue = method == "Fake.event" ? params["n"].toInt() : -1;
  });
  EXPECT_TRUE(session.sendCommandSync("Any.method", {}, QString(), 10s).result["ok"].toBool());
  EXPECT_TRUE(queue.runUntil([&] { return eventValue == 7; }));
}
