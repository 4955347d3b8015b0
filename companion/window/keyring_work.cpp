#include "companion/window/keyring_work.hpp"

#include <memory>

#include "companion/main_loop_tasks.hpp"
#include "companion/window/application_hold.hpp"
#include "companion/window/keyring_prompt.hpp"

namespace companion::window {

namespace {

struct Attempt {
  std::function<void()> work;
  std::function<void(const std::optional<SignInError>&)> done;
  ApplicationHold hold;
  bool mayAsk = true;
  std::optional<SignInError> error;
};

void work(Attempt& attempt) {
  try {
    attempt.error.reset();
    attempt.work();
  } catch (const SignInError& error) {
    attempt.error = error;
  } catch (const std::exception& error) {
    attempt.error = SignInError(SignInError::Case::keyringFailed, error.what());
  }
}

bool userCanHelp(const SignInError& error) {
  return error.kind == SignInError::Case::keyringLocked ||
         error.kind == SignInError::Case::keyringMissing;
}

void start(const std::shared_ptr<Attempt>& attempt) {
  runBeside([attempt] { work(*attempt); },
            [attempt] {
              if (!attempt->error || !userCanHelp(*attempt->error) || !attempt->mayAsk)
                return attempt->done(attempt->error);
              attempt->mayAsk = false;
              promptForKeyring([attempt](bool usable) {
                if (usable) return start(attempt);
                attempt->done(attempt->error);
              });
            });
}

}  // namespace

void runWithKeyring(std::function<void()> work,
                    std::function<void(const std::optional<SignInError>&)> done) {
  auto attempt = std::make_shared<Attempt>();
  attempt->work = std::move(work);
  attempt->done = std::move(done);
  start(attempt);
}

}  // namespace companion::window
