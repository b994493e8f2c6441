#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <unordered_set>

#include "LocalControl/UnixSocketError.h"

namespace velmora {
namespace {

TEST(UnixSocketError, EqualsByCaseOperationAndCode) {
  const std::string bind = "bind";
  EXPECT_EQ(UnixSocketError::system("bind", EACCES), UnixSocketError::system(bind.c_str(), EACCES));
  EXPECT_FALSE(UnixSocketError::system("bind", EACCES) == UnixSocketError::system("bind", EPERM));
  EXPECT_FALSE(UnixSocketError::system("bind", EACCES) == UnixSocketError::system("listen", EACCES));
  EXPECT_FALSE(UnixSocketError::peerRejected() == UnixSocketError::disconnected());
}

TEST(UnixSocketError, HashesByValue) {
  const std::string bind = "bind";
  const std::unordered_set<UnixSocketError> errors{
      UnixSocketError::system("bind", EACCES), UnixSocketError::system(bind.c_str(), EACCES),
      UnixSocketError::unsafeEndpoint(),       UnixSocketError::peerRejected(),
      UnixSocketError::disconnected(),         UnixSocketError::disconnected()};
  EXPECT_EQ(errors.size(), 4u);
}

TEST(UnixSocketError, CarriesTheCallAndItsErrno) {
  const auto error = UnixSocketError::system("listen", EADDRINUSE);
  EXPECT_EQ(error.kind(), UnixSocketError::Kind::system);
  EXPECT_EQ(error.operation(), "listen");
  EXPECT_EQ(error.code(), EADDRINUSE);
}

TEST(UnixSocketError, NamesItsCaseForLogs) {
  EXPECT_STREQ(UnixSocketError::system("chmod", EPERM).what(), "chmod");
  EXPECT_STREQ(UnixSocketError::unsafeEndpoint().what(), "unsafeEndpoint");
  EXPECT_STREQ(UnixSocketError::peerRejected().what(), "peerRejected");
  EXPECT_STREQ(UnixSocketError::disconnected().what(), "disconnected");
}

TEST(UnixSocketError, SaysInWordsWhatHappened) {
  EXPECT_EQ(UnixSocketError::system("bind", EACCES).inWords(), "bind: Permission denied");
  EXPECT_EQ(UnixSocketError::unsafeEndpoint().inWords(),
            "the path is too long, or what stands there is not this user's");
  EXPECT_EQ(UnixSocketError::peerRejected().inWords(), "a process of another user was at the other end");
  EXPECT_EQ(UnixSocketError::disconnected().inWords(), "the other end has closed");
}

}  // namespace
}  // namespace velmora
