// What the program sets for the libraries before it starts them.

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "app/environment.h"

namespace {

std::string home_after_preparation() {
    host::Options options;
    options.headless = true;
    host::prepare_environment(options);
    const char *home = std::getenv("HOME");
    return home != nullptr ? home : "";
}

std::string home_of_user() {
    const passwd *user = getpwuid(getuid());
    return user != nullptr ? user->pw_dir : "";
}

TEST(Environment, AHomeThatIsSetIsKept) {
    setenv("HOME", "/somewhere/else", 1);
    EXPECT_EQ(home_after_preparation(), "/somewhere/else");
}

TEST(Environment, AHomeThatIsNotSetIsTheUsers) {
    unsetenv("HOME");
    EXPECT_EQ(home_after_preparation(), home_of_user());
}

TEST(Environment, AnEmptyHomeIsTheUsers) {
    setenv("HOME", "", 1);
    EXPECT_EQ(home_after_preparation(), home_of_user());
}

}  // namespace
