#include "app/DependencyContainer.h"

#include "library/SnippetListViewModel.h"
#include "palette/ClipboardServiceProtocol.h"
#include "palette/FuzzySearchService.h"
#include "settings/HotkeyService.h"
#include "storage/CollectionFileStorageService.h"
#include "support/Environment.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

/// With a home of its own, since the store makes its folder.
class DependencyContainerTest : public testing::Test {
protected:
    QTemporaryDir home;
    Environment homeFolder{"HOME", home.path().toLocal8Bit()};
    Environment configFolder{"XDG_CONFIG_HOME", home.path().toLocal8Bit()};
};

TEST_F(DependencyContainerTest, thereIsOneForTheProgram)
{
    EXPECT_EQ(&DependencyContainer::shared(), &DependencyContainer::shared());
}

TEST_F(DependencyContainerTest, theStoreIsTheSharedOneUnderBothOfItsNames)
{
    DependencyContainer container;
    CollectionFileStorageService& store = container.collectionFileStorageService();
    EXPECT_EQ(&store, &CollectionFileStorageService::shared());
    EXPECT_EQ(&container.storageService(), static_cast<StorageServiceProtocol*>(&store));
}

TEST_F(DependencyContainerTest, eachSlotKeepsWhatItWasFilledWith)
{
    DependencyContainer container;
    EXPECT_EQ(&container.clipboardService(), &container.clipboardService());
    EXPECT_EQ(&container.searchService(), &container.searchService());
    EXPECT_EQ(&container.searchService(),
              static_cast<SearchServiceProtocol*>(&container.fuzzySearchService()));
    EXPECT_EQ(&container.hotkeyService(), &container.hotkeyService());
    EXPECT_EQ(&container.mainSnippetListViewModel(), &container.mainSnippetListViewModel());

    DependencyContainer another;
    EXPECT_NE(&container.hotkeyService(), &another.hotkeyService());
}

} // namespace

} // namespace vellumry::test
