// The data of a drag and the list of its formats, through their interfaces.

#include <cstring>

#include <gtest/gtest.h>

#include "dock/dragdrop/DragObjects.h"
#include "support/ComApartment.h"
#include "support/ImportSlot.h"

extern "C" decltype(&::OleDuplicateData) __imp_OleDuplicateData;

namespace lumenor {

namespace {

using Microsoft::WRL::ComPtr;

constexpr FORMATETC Format(CLIPFORMAT format, DWORD tymed = TYMED_HGLOBAL, DWORD aspect = DVASPECT_CONTENT,
                           LONG index = -1) {
  return {format, nullptr, aspect, index, tymed};
}

class DataObject : public ::testing::Test {
protected:
  /// Stores a copy of `text`, or the text itself.
  void Store(FORMATETC format, const std::string &text) const {
    STGMEDIUM medium = MakeMemory(text);
    ASSERT_EQ(S_OK, data->SetData(&format, &medium, TRUE));
  }

  HRESULT Query(FORMATETC format) const { return data->QueryGetData(&format); }

  /// What the object hands out as `format`, or "none" and the result.
  std::string Get(FORMATETC format) const {
    STGMEDIUM medium;
    std::memset(&medium, 0xAB, sizeof medium);
    if (const HRESULT result = data->GetData(&format, &medium); result != S_OK)
      return medium.tymed == TYMED_NULL && medium.hGlobal == nullptr && medium.pUnkForRelease == nullptr
                 ? "none " + std::to_string(static_cast<unsigned long>(result))
                 : "not cleared";
    const std::string text = MemoryText(medium);
    ::ReleaseStgMedium(&medium);
    return text;
  }

  std::size_t CountFormats() const {
    ComPtr<IEnumFORMATETC> formats;
    EXPECT_EQ(S_OK, data->EnumFormatEtc(DATADIR_GET, &formats));
    std::size_t count = 0;
    for (FORMATETC format = {}; formats->Next(1, &format, nullptr) == S_OK; ++count) {
    }
    return count;
  }

  const tests::ComApartment com;
  const ComPtr<CDataObject> data = MakeComObject<CDataObject>();
};

const std::string noSuchFormat = "none " + std::to_string(static_cast<unsigned long>(DV_E_FORMATETC));

TEST_F(DataObject, IsMadeWithOneReference) {
  EXPECT_EQ(1U, CountReferences(data.Get()));
  EXPECT_EQ(2U, data->AddRef());
  EXPECT_EQ(1U, data->Release());
}

TEST_F(DataObject, IsADataObjectAndNothingElse) {
  ComPtr<IUnknown> unknown;
  EXPECT_EQ(S_OK, data->QueryInterface(IID_PPV_ARGS(unknown.GetAddressOf())));
  ComPtr<IDataObject> same;
  EXPECT_EQ(S_OK, data->QueryInterface(IID_PPV_ARGS(same.GetAddressOf())));
  EXPECT_EQ(static_cast<IDataObject *>(data.Get()), same.Get());
  EXPECT_EQ(3U, CountReferences(data.Get()));
  void *other = &other;
  EXPECT_EQ(E_NOINTERFACE, data->QueryInterface(IID_IDropSource, &other));
  EXPECT_EQ(nullptr, other);
  EXPECT_EQ(E_POINTER, data->QueryInterface(IID_IUnknown, nullptr));
}

TEST_F(DataObject, HandsOutACopyOfWhatItHolds) {
  Store(Format(CF_TEXT), "held");
  EXPECT_EQ("held", Get(Format(CF_TEXT)));
  EXPECT_EQ("held", Get(Format(CF_TEXT, TYMED_HGLOBAL | TYMED_ISTREAM))) << "the first copy's release took none away";
}

TEST_F(DataObject, HandsOutOnlyWhatMatchesInAllFourRespects) {
  Store(Format(CF_TEXT), "held");
  EXPECT_EQ(noSuchFormat, Get(Format(CF_HDROP)));
  EXPECT_EQ(noSuchFormat, Get(Format(CF_TEXT, TYMED_ISTREAM)));
  EXPECT_EQ(noSuchFormat, Get(Format(CF_TEXT, TYMED_HGLOBAL, DVASPECT_ICON)));
  EXPECT_EQ(noSuchFormat, Get(Format(CF_TEXT, TYMED_HGLOBAL, DVASPECT_CONTENT, 0)));
}

TEST_F(DataObject, HandsOutTheOneOfSeveralThatMatches) {
  Store(Format(CF_TEXT), "text");
  Store(Format(CF_OEMTEXT), "other text");
  Store(Format(CF_TEXT, TYMED_HGLOBAL | TYMED_GDI), "later");
  EXPECT_EQ("other text", Get(Format(CF_OEMTEXT)));
  EXPECT_EQ("text", Get(Format(CF_TEXT)));
}

TEST_F(DataObject, WithoutFormatsHandsOutNothing) { EXPECT_EQ(noSuchFormat, Get(Format(CF_TEXT))); }

TEST_F(DataObject, HandsOutAnEmptyMediumAsAnEmptyOne) {
  FORMATETC format = fileListFormat;
  STGMEDIUM medium = {};
  medium.tymed = TYMED_HGLOBAL;
  ASSERT_EQ(S_OK, data->SetData(&format, &medium, TRUE));
  medium.hGlobal = &medium;
  EXPECT_EQ(S_OK, data->GetData(&format, &medium));
  EXPECT_EQ(static_cast<DWORD>(TYMED_HGLOBAL), medium.tymed);
  EXPECT_EQ(nullptr, medium.hGlobal);
}

TEST_F(DataObject, RefusesNullArguments) {
  FORMATETC format = Format(CF_TEXT);
  STGMEDIUM medium = {};
  EXPECT_EQ(E_INVALIDARG, data->GetData(nullptr, &medium));
  EXPECT_EQ(E_INVALIDARG, data->GetData(&format, nullptr));
  EXPECT_EQ(DV_E_FORMATETC, data->QueryGetData(nullptr));
  EXPECT_EQ(E_INVALIDARG, data->SetData(nullptr, &medium, TRUE));
  EXPECT_EQ(E_INVALIDARG, data->SetData(&format, nullptr, TRUE));
  EXPECT_EQ(E_POINTER, data->EnumFormatEtc(DATADIR_GET, nullptr));
}

TEST_F(DataObject, ReportsItsFormatsAndWhatIsWrongWithOthers) {
  EXPECT_EQ(DV_E_TYMED, Query(fileListFormat)) << "nothing stored";
  Store(Format(CF_TEXT), "text");
  EXPECT_EQ(S_OK, Query(Format(CF_TEXT)));
  EXPECT_EQ(S_OK, Query(Format(CF_TEXT, TYMED_HGLOBAL | TYMED_FILE, DVASPECT_CONTENT | DVASPECT_ICON, 5)));
  EXPECT_EQ(DV_E_DVASPECT, Query(Format(CF_TEXT, TYMED_HGLOBAL, DVASPECT_ICON)));
  EXPECT_EQ(DV_E_TYMED, Query(Format(CF_TEXT, TYMED_ISTREAM)));
  EXPECT_EQ(DV_E_CLIPFORMAT, Query(fileListFormat));
  Store(fileListFormat, "list");
  EXPECT_EQ(S_OK, Query(fileListFormat));
}

TEST_F(DataObject, TakesAMediumOverAndReleasesItInTheEnd) {
  CountedObject owner;
  STGMEDIUM medium = MakeMemory("text");
  medium.pUnkForRelease = &owner;
  const HGLOBAL memory = medium.hGlobal;
  FORMATETC format = Format(CF_TEXT);
  {
    const auto holder = MakeComObject<CDataObject>();
    ASSERT_EQ(S_OK, holder->SetData(&format, &medium, TRUE));
    EXPECT_EQ(1U, owner.references);
  }
  EXPECT_EQ(0U, owner.references);
  ::GlobalFree(memory);
}

TEST_F(DataObject, ReplacesWhatItHasOfTheVerySameFormat) {
  CountedObject owner;
  STGMEDIUM medium = MakeMemory("first");
  const HGLOBAL memory = medium.hGlobal;
  medium.pUnkForRelease = &owner;
  FORMATETC privateFormat = Format(0xC123);
  ASSERT_EQ(S_OK, data->SetData(&privateFormat, &medium, TRUE));
  Store(Format(CF_TEXT), "text");
  Store(privateFormat, "second");
  EXPECT_EQ(0U, owner.references) << "the first one is released";
  ::GlobalFree(memory);
  EXPECT_EQ("second", Get(privateFormat));
  EXPECT_EQ("text", Get(Format(CF_TEXT)));
  EXPECT_EQ(2U, CountFormats());
  STGMEDIUM third = MakeMemory("third");
  ASSERT_EQ(S_OK, data->SetData(&privateFormat, &third, FALSE));
  ::ReleaseStgMedium(&third);
  EXPECT_EQ("third", Get(privateFormat));
  EXPECT_EQ(2U, CountFormats());
}

TEST_F(DataObject, KeepsFormatsThatDifferInOneRespectBesideEachOther) {
  Store(Format(0xC123), "first");
  Store(Format(0xC124), "another number");
  Store(Format(0xC123, TYMED_HGLOBAL | TYMED_GDI), "another medium");
  Store(Format(0xC123, TYMED_HGLOBAL, DVASPECT_ICON), "another aspect");
  Store(Format(0xC123, TYMED_HGLOBAL, DVASPECT_CONTENT, 0), "another part");
  EXPECT_EQ(5U, CountFormats());
  EXPECT_EQ("first", Get(Format(0xC123)));
}

TEST_F(DataObject, CopiesAMediumThatItDoesNotTakeOver) {
  FORMATETC format = Format(CF_TEXT);
  STGMEDIUM medium = MakeMemory("mine");
  ASSERT_EQ(S_OK, data->SetData(&format, &medium, FALSE));
  std::strcpy(static_cast<char *>(::GlobalLock(medium.hGlobal)), "gone");
  ::GlobalUnlock(medium.hGlobal);
  EXPECT_EQ("mine", Get(format));
  EXPECT_EQ("gone", MemoryText(medium));
  ::ReleaseStgMedium(&medium);
}

TEST_F(DataObject, HasNothingMoreToOffer) {
  FORMATETC format = fileListFormat;
  STGMEDIUM medium = {};
  DWORD connection = 0;
  IEnumSTATDATA *connections = nullptr;
  EXPECT_EQ(E_NOTIMPL, data->GetDataHere(&format, &medium));
  EXPECT_EQ(E_NOTIMPL, data->GetCanonicalFormatEtc(&format, &format));
  EXPECT_EQ(E_NOTIMPL, data->DAdvise(&format, 0, nullptr, &connection));
  EXPECT_EQ(E_NOTIMPL, data->DUnadvise(1));
  EXPECT_EQ(E_NOTIMPL, data->EnumDAdvise(&connections));
}

TEST_F(DataObject, ListsItsFormatsForReadingOnly) {
  Store(Format(CF_TEXT), "text");
  Store(fileListFormat, "list");
  ComPtr<IEnumFORMATETC> formats;
  ASSERT_EQ(S_OK, data->EnumFormatEtc(DATADIR_GET, &formats));
  FORMATETC listed[3] = {};
  ULONG fetched = 0;
  EXPECT_EQ(S_FALSE, formats->Next(3, listed, &fetched));
  ASSERT_EQ(2U, fetched);
  EXPECT_EQ(CF_TEXT, listed[0].cfFormat);
  EXPECT_EQ(CF_HDROP, listed[1].cfFormat);
  IEnumFORMATETC *none = formats.Get();
  EXPECT_EQ(static_cast<HRESULT>(0x40000), data->EnumFormatEtc(DATADIR_SET, &none));
  EXPECT_EQ(nullptr, none);
}

TEST_F(DataObject, KeepsNoPointerToTheDeviceOfACaller) {
  DVTARGETDEVICE device = {};
  FORMATETC format = Format(CF_TEXT);
  format.ptd = &device;
  STGMEDIUM medium = MakeMemory("text");
  ASSERT_EQ(S_OK, data->SetData(&format, &medium, TRUE));
  ComPtr<IEnumFORMATETC> formats;
  ASSERT_EQ(S_OK, data->EnumFormatEtc(DATADIR_GET, &formats));
  FORMATETC listed = {};
  EXPECT_EQ(S_OK, formats->Next(1, &listed, nullptr));
  EXPECT_EQ(nullptr, listed.ptd);
}

// Every kind of medium: what is released beside the copy mustn't be the original's.

TEST(CopiedMedium, SharesWhatHasAnOwner) {
  CountedObject owner;
  STGMEDIUM medium = MakeMemory("text");
  medium.pUnkForRelease = &owner;
  STGMEDIUM copy = {};
  EXPECT_EQ(S_OK, CopyMedium(medium, copy));
  EXPECT_EQ(medium.hGlobal, copy.hGlobal);
  EXPECT_EQ(2U, owner.references);
  ::ReleaseStgMedium(&copy);
  EXPECT_EQ(1U, owner.references);
  EXPECT_EQ("text", MemoryText(medium));
  ::GlobalFree(medium.hGlobal);
}

TEST(CopiedMedium, HoldsAStreamOnceMore) {
  const tests::ComApartment com;
  STGMEDIUM medium = {};
  medium.tymed = TYMED_ISTREAM;
  ASSERT_EQ(S_OK, ::CreateStreamOnHGlobal(nullptr, TRUE, &medium.pstm));
  STGMEDIUM copy = {};
  EXPECT_EQ(S_OK, CopyMedium(medium, copy));
  EXPECT_EQ(medium.pstm, copy.pstm);
  EXPECT_EQ(2U, CountReferences(medium.pstm));
  ::ReleaseStgMedium(&copy);
  EXPECT_EQ(1U, CountReferences(medium.pstm));
  ::ReleaseStgMedium(&medium);
}

TEST(CopiedMedium, HoldsAStreamBesideItsOwner) {
  const tests::ComApartment com;
  CountedObject owner;
  STGMEDIUM medium = {};
  medium.tymed = TYMED_ISTREAM;
  ASSERT_EQ(S_OK, ::CreateStreamOnHGlobal(nullptr, TRUE, &medium.pstm));
  medium.pUnkForRelease = &owner;
  const ULONG references = owner.references;
  STGMEDIUM copy = {};
  EXPECT_EQ(S_OK, CopyMedium(medium, copy));
  EXPECT_EQ(2U, CountReferences(medium.pstm));
  EXPECT_EQ(references + 1, owner.references);
  ::ReleaseStgMedium(&copy);
  EXPECT_EQ(1U, CountReferences(medium.pstm));
  EXPECT_EQ(references, owner.references);
  medium.pstm->Release();
}

HANDLE WINAPI DuplicateNothing(HANDLE, CLIPFORMAT, UINT) { return nullptr; }

TEST(CopiedMedium, IsEmptyWhereItCannotBeCopied) {
  const tests::ImportSlot slot(&__imp_OleDuplicateData, &DuplicateNothing);
  STGMEDIUM medium = MakeMemory("text");
  STGMEDIUM copy = medium;
  EXPECT_EQ(E_OUTOFMEMORY, CopyMedium(medium, copy));
  EXPECT_EQ(static_cast<DWORD>(TYMED_NULL), copy.tymed);
  EXPECT_EQ(nullptr, copy.hGlobal);
  ::ReleaseStgMedium(&medium);
}

TEST(CopiedMedium, HasAFileNameOfItsOwn) {
  wchar_t name[] = L"C:\\file.txt";
  STGMEDIUM medium = {};
  medium.tymed = TYMED_FILE;
  medium.lpszFileName = name;
  STGMEDIUM copy = {};
  EXPECT_EQ(S_OK, CopyMedium(medium, copy));
  ASSERT_NE(medium.lpszFileName, copy.lpszFileName);
  EXPECT_STREQ(L"C:\\file.txt", copy.lpszFileName);
  ::CoTaskMemFree(copy.lpszFileName); // not released: that would delete the file
}

TEST(CopiedMedium, HasABitmapOfItsOwn) {
  STGMEDIUM medium = {};
  medium.tymed = TYMED_GDI;
  medium.hBitmap = ::CreateBitmap(3, 2, 1, 32, nullptr);
  STGMEDIUM copy = {};
  EXPECT_EQ(S_OK, CopyMedium(medium, copy));
  EXPECT_NE(medium.hBitmap, copy.hBitmap);
  BITMAP size = {};
  EXPECT_NE(0, ::GetObjectW(copy.hBitmap, sizeof size, &size));
  EXPECT_EQ(3, size.bmWidth);
  ::ReleaseStgMedium(&copy);
  ::ReleaseStgMedium(&medium);
}

CLIPFORMAT duplicatedAs = 0;

HANDLE WINAPI NoteFormat(HANDLE, CLIPFORMAT format, UINT) {
  duplicatedAs = format;
  return nullptr;
}

// The test platform can't duplicate one.
TEST(CopiedMedium, IsAskedForAsAMetafilePicture) {
  const tests::ImportSlot slot(&__imp_OleDuplicateData, &NoteFormat);
  STGMEDIUM medium = MakeMemory("any memory");
  medium.tymed = TYMED_MFPICT;
  STGMEDIUM copy = {};
  CopyMedium(medium, copy);
  EXPECT_EQ(CF_METAFILEPICT, duplicatedAs);
  ::GlobalFree(medium.hGlobal);
}

/// Notes what is duplicated as plain memory while it lives.
class DuplicationSpy {
public:
  DuplicationSpy() { duplications = 0; }

  static inline int duplications;

private:
  static HANDLE WINAPI Note(HANDLE, CLIPFORMAT, UINT) {
    ++duplications;
    return nullptr;
  }

  const tests::ImportSlot<decltype(&::OleDuplicateData)> slot{&__imp_OleDuplicateData, &Note};
};

// The platform's duplication takes a metafile of the newer kind for a piece of memory.
TEST(CopiedMedium, HasAnEnhancedMetafileOfItsOwn) {
  const DuplicationSpy spy;
  const HDC recording = ::CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
  ::Rectangle(recording, 1, 2, 30, 40);
  STGMEDIUM medium = {};
  medium.tymed = TYMED_ENHMF;
  medium.hEnhMetaFile = ::CloseEnhMetaFile(recording);
  const UINT bytes = ::GetEnhMetaFileBits(medium.hEnhMetaFile, 0, nullptr);
  STGMEDIUM copy = {};
  EXPECT_EQ(S_OK, CopyMedium(medium, copy));
  EXPECT_EQ(0, DuplicationSpy::duplications);
  EXPECT_NE(medium.hEnhMetaFile, copy.hEnhMetaFile);
  ::ReleaseStgMedium(&medium);
  EXPECT_EQ(bytes, ::GetEnhMetaFileBits(copy.hEnhMetaFile, 0, nullptr));
  ::ReleaseStgMedium(&copy);
}

TEST(CopiedMedium, OfNothingIsNothing) {
  STGMEDIUM copy = MakeMemory("text");
  const HGLOBAL memory = copy.hGlobal;
  EXPECT_EQ(S_OK, CopyMedium({}, copy));
  EXPECT_EQ(static_cast<DWORD>(TYMED_NULL), copy.tymed);
  ::GlobalFree(memory);
}

// The list of formats.

class FormatList : public ::testing::Test {
protected:
  /// The formats that one call hands out, and its result behind them.
  std::vector<long> Next(ULONG wanted) const {
    FORMATETC out[8] = {};
    ULONG fetched = 99;
    const HRESULT result = list->Next(wanted, out, &fetched);
    std::vector<long> formats;
    for (ULONG i = 0; i < fetched; ++i)
      formats.push_back(out[i].cfFormat);
    formats.push_back(result);
    return formats;
  }

  const ComPtr<CEnumFormatEtc> list =
      MakeComObject<CEnumFormatEtc>(std::vector<FORMATETC>{Format(11), Format(12), Format(13)});
};

using Numbers = std::vector<long>;

TEST_F(FormatList, IsMadeWithOneReference) {
  EXPECT_EQ(1U, CountReferences(list.Get()));
  ComPtr<IEnumFORMATETC> same;
  EXPECT_EQ(S_OK, list->QueryInterface(IID_PPV_ARGS(same.GetAddressOf())));
  EXPECT_EQ(2U, CountReferences(list.Get()));
}

TEST_F(FormatList, HandsOutOneAfterTheOther) {
  EXPECT_EQ((Numbers{11, S_OK}), Next(1));
  EXPECT_EQ((Numbers{12, 13, S_OK}), Next(2));
  EXPECT_EQ((Numbers{S_FALSE}), Next(1));
}

TEST_F(FormatList, HandsOutWhatThereIsWhenMoreIsWanted) { EXPECT_EQ((Numbers{11, 12, 13, S_FALSE}), Next(5)); }

TEST_F(FormatList, HandsOutNothingToWhoWantsNothing) {
  EXPECT_EQ((Numbers{S_FALSE}), Next(0));
  ULONG fetched = 99;
  EXPECT_EQ(S_FALSE, list->Next(1, nullptr, &fetched));
  EXPECT_EQ(0U, fetched);
  EXPECT_EQ((Numbers{11, S_OK}), Next(1));
}

TEST_F(FormatList, NeedsNoCounterForOneFormatOnly) {
  FORMATETC out[2] = {};
  EXPECT_EQ(S_FALSE, list->Next(2, out, nullptr));
  EXPECT_EQ(0, out[0].cfFormat);
  EXPECT_EQ(S_OK, list->Next(1, out, nullptr));
  EXPECT_EQ(11, out[0].cfFormat);
}

TEST_F(FormatList, SkipsToItsEndAndNotBeyond) {
  EXPECT_EQ(S_OK, list->Skip(2));
  EXPECT_EQ((Numbers{13, S_OK}), Next(1));
  EXPECT_EQ(S_OK, list->Skip(0));
  EXPECT_EQ(S_FALSE, list->Skip(1));
  EXPECT_EQ(S_OK, list->Reset());
  EXPECT_EQ(S_OK, list->Skip(3));
  EXPECT_EQ((Numbers{S_FALSE}), Next(1));
  EXPECT_EQ(S_OK, list->Reset());
  EXPECT_EQ(S_FALSE, list->Skip(0xFFFFFFFF));
  EXPECT_EQ((Numbers{S_FALSE}), Next(1));
}

TEST_F(FormatList, IsClonedAtItsPosition) {
  list->Skip(1);
  ComPtr<IEnumFORMATETC> clone;
  EXPECT_EQ(S_OK, list->Clone(&clone));
  EXPECT_EQ((Numbers{12, S_OK}), Next(1));
  FORMATETC out = {};
  EXPECT_EQ(S_OK, clone->Next(1, &out, nullptr));
  EXPECT_EQ(12, out.cfFormat);
  EXPECT_EQ(1U, CountReferences(clone.Get()));
  EXPECT_EQ(E_POINTER, list->Clone(nullptr));
}

} // namespace

} // namespace lumenor
