/* Quavermill for hosts: converting whole audio files, the tag and effect lists that go with a conversion, what the
 * modules beside the library offer, what files are and which tags they have, decoding and encoding block by block, and
 * the settings of encoders and effects.
 *
 * Usable from C11 and C++. Nothing of the operating system's own headers is needed.
 *
 * A conversion, without its error handling:
 *
 *     QvConverter* converter = QACCreate();
 *     bool good = QACConvertAudio(converter, source, destination, encoder, settings) == QV_DONE;
 *     if (good) {
 *         uint32_t percent = 0;
 *         while (QACGetProgress(converter, &percent), percent < 100) wait_a_little();
 *         good = QACGetLastError(converter, text) == QV_NOTHING;
 *     }
 *     QACDestroy(converter);
 *
 *
 * 1. Handles
 *
 * Everything hangs on a handle: QACCreate makes it, QACDestroy frees it, and it is the only thing a host ever frees.
 * A null handle is refused by every call with QV_NOTHING, except QACDestroy, which accepts it; nothing else is
 * touched then. A handle that was destroyed must not be used again: nothing detects it. All handles must be destroyed
 * before the library is unloaded, since each has a timer that runs code of the library.
 *
 *
 * 2. Threads
 *
 * The library has no thread that does a host's work: a conversion runs in a process of its own, is watched only while
 * the host calls QACGetProgress (or one of the three QACSet calls marked below), and stands unwatched in between. The
 * one thread beside the host's belongs to the system's timer service. It carries reported text to where
 * QACGetLastError and QACGetLastInfo find it, every 10 ms, and never calls the host.
 *
 *     call                                               thread
 *     QACCreate                                          any
 *     QACDestroy                                         any, with no other call on the handle running or to come;
 *                                                        while a panel stands, that of the host's windows
 *     the four calls about settings                      that of the host's windows; otherwise as those below
 *     every other call on one handle                     any, one at a time; not always the same one
 *     calls on two handles                               any, at the same time
 *
 * No call may be made from within the library's load or unload notification. No call waits for the converter. Calls
 * marked (modules) below load modules and wait for what these do, in the thread of the call; no other call waits for a
 * file or a module. The two calls that show a form of the library's wait for its user. Any call may wait for a timer
 * step that is just running, or, when a great deal of text is reported at once, for the step that makes room for it.
 *
 *
 * 3. Text
 *
 * Text is NUL-terminated UTF-16. A text that goes in stays the host's and is not kept past the call, with the one
 * exception of QAEOpenFile; null is taken as the empty text. A text that comes out is copied whole, with its NUL, into
 * the host's buffer. NO SIZE IS PASSED AND NOTHING IS CUT: a buffer that is too small is written past its end. Each
 * call says how long its texts can become. A null buffer receives nothing.
 *
 *
 * 4. Results and failure
 *
 * Results are the values below. A result only says what the call itself did; compare it with the values that the call
 * names, since QV_FAILED is not zero either. What went wrong, and what is being done, is told in two texts, one for
 * errors and one for information, which gather until QACGetLastError and QACGetLastInfo take them. A text is there at
 * the next timer step, so about 10 ms later than the call that reported it: a call can have failed while
 * QACGetLastError still finds nothing.
 *
 * No call catches an exhausted memory: the C++ exception of the allocator (std::bad_alloc) passes through to a C++
 * host, which may catch it and go on with the handle, or destroy it. A host that can't catch it is ended by it.
 */
#ifndef QUAVERMILL_QUAVERMILL_H
#define QUAVERMILL_QUAVERMILL_H

#include "types.h"

#if !defined(_WIN32)
#define QV_API __attribute__((visibility("default")))
#elif defined(QUAVERMILL_BUILDS_LIBRARY)
#define QV_API __declspec(dllexport)
#else
#define QV_API __declspec(dllimport)
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct QvConverter QvConverter;

/* Results. */
enum {
    QV_DONE = 1,    /* done */
    QV_NO_ART = 2,  /* the row was delivered, but no art came with it */
    QV_NOTHING = 0, /* nothing was done: no such row, nothing to take, no module, refused, or a null handle */
    QV_FAILED = -1  /* failed, and the errors say why */
};

/* What QACSetPriority takes. */
enum {
    QV_PRIORITY_NORMAL = 0,
    QV_PRIORITY_LOW = 1,  /* below normal */
    QV_PRIORITY_IDLE = 2, /* only what nobody else wants */
    QV_PRIORITY_HIGH = 3  /* above normal, within the ordinary programs */
};

/* ---- Handles ------------------------------------------------------------------------------------------------- */

/* Makes a converter handle: no conversion, both lists empty, processor -1, tags not written through, no text reported.
 * Its channels for reported text are two pipes. A system that refuses them is no failure: what would go through the
 * missing one is lost, and a handle without the information channel never says 100 (see QACGetProgress). Null is no
 * result to expect: without memory the call raises. */
QV_API QvConverter* QV_CALL QACCreate(void);

/* Frees the handle with its lists and untaken text. A converter that still runs is not told: it goes on to the end of
 * its file, unwatched, with nobody to read what it writes; cancel it and wait for 100 first to be rid of it. Waits for
 * a timer step that is just running. Always QV_DONE, also for null. */
QV_API int32_t QV_CALL QACDestroy(QvConverter* converter);

/* ---- Reported text ------------------------------------------------------------------------------------------- */

/* Takes the errors reported since the last call: copies the whole text into `buffer` and empties it. QV_DONE when
 * there was any; QV_NOTHING when there was none, or `buffer` is null, and the buffer is as it was.
 *
 * The oldest message stands first. Each is a line that ends in CR LF; where its place in the library is named, two
 * blanks and the place in square brackets precede that:
 *
 *     Error starting encoder
 *     Error loading encoder.  [clConverter::EncoderOpenFile]
 *
 * LENGTH: without any bound. The library, the modules it loads and the converter program write here, as much as they
 * like, and nothing is dropped until it is taken. A host keeps it short by taking it often, after each poll say, and
 * gives it a generous buffer, 1,048,576 units or more; a module or converter that misbehaves can outgrow any buffer. */
QV_API int32_t QV_CALL QACGetLastError(QvConverter* converter, QvChar* buffer);

/* The same for information: what is being done, what the converter says of itself, and while a conversion is polled
 * the converter's current activity, one line (which may be empty) for each poll. The line "Encoding finished" ends a
 * conversion, however it ended; what the converter wrote last may stand behind it.
 *
 * LENGTH: without any bound, as above. */
QV_API int32_t QV_CALL QACGetLastInfo(QvConverter* converter, QvChar* buffer);

/* ---- Modules -------------------------------------------------------------------------------------------------
 *
 * What the folders of modules beside the library offer: `decoder`, `encoder` and `DSPs`. A host asks for index 0, 1,
 * 2 and so on until it gets QV_NOTHING. INDEX 0 IS WHAT LOOKS: it empties the list and fills it again from the folder,
 * each time it is asked for; a higher index only reads what index 0 found, and before the first index 0 there is
 * nothing to be found. Each handle has lists of its own.
 *
 * A `name` is what every other call of this library knows the module by: the name of its file, without folder and
 * extension.
 *
 * Each call: QV_DONE when there is such a row. QV_NOTHING when there is none, also for a negative index, which looks
 * nowhere; the buffers are then as they were. They should hold NUL-terminated text on entry. No result says that a
 * folder could not be read or that a module does not work; what a module itself reports is found in the errors. Index 0
 * leaves two lines of information, "Getting list of available encoders" and "Finished getting list of available
 * encoders", with "decoders" or "DSPs" in the others.
 *
 * LENGTH: of a name as much as the file system allows, which is less than 260 units. Extension and description are
 * as long as the module makes them: a few units and a short line, but nothing bounds them.
 */

/* (modules) Reads a row of the list of encoders, one for each module, in the order of the folder's listing: its name,
 * and the file extension that it writes, with its dot, as the module spells it. An encoder that is not to be offered
 * has an extension of ".IGNORE".
 *
 * Index 0 loads every encoder, asks it, and lets it go. One that can't be loaded is passed over. One that has no answer
 * ends the list: those behind it in the folder are not listed. */
QV_API int32_t QV_CALL QACGetEncoder(QvConverter* converter, int32_t index, QvChar* name, QvChar* extension);

/* (modules) Reads a row of the list of decoders, one for each file type that a module reads, so that one module may
 * have several rows of the same name: the name, the type's extension with its dot as the module spells it, and a
 * description for people. In the order of the folder's listing.
 *
 * Index 0 loads every decoder, asks it, and lets it go. One that can't be loaded is passed over; a type that a module
 * does not describe ends the types of that module. Types that a module does not want to be offered are left out. */
QV_API int32_t QV_CALL QACGetDecoder(QvConverter* converter, int32_t index, QvChar* name, QvChar* extension,
                                     QvChar* description);

/* Reads a row of the list of effects, one for each file in the folder: its name. Sorted by their paths, unit by unit,
 * so that all capitals stand before the small letters. No module is loaded: whether it works shows when it is used. */
QV_API int32_t QV_CALL QACGetDSP(QvConverter* converter, int32_t index, QvChar* name);

/* ---- What a file is ------------------------------------------------------------------------------------------
 *
 * The calls of this section and the next load the decoder of a file, chosen by the file's extension, ask it, and let
 * it go before they return; they have nothing to do with a conversion or with direct decoding, and the same file may
 * be open there, as far as its decoder shares it. A `file` is a path, relative ones being relative to the current
 * folder.
 *
 * Each call that goes to a file reports two lines of information, "Reading audio info from file '...'" and "Finished
 * reading audio info from file '...'" (the words differ from call to call); the second also stands behind a failure
 * of the decoder. Results, where a call says nothing else:
 *
 *     QV_FAILED    the file does not exist, no decoder was found for it, or the decoder refused: the errors say which,
 *                  and hold what the decoder said of it
 *     QV_NOTHING   a decoder was found but could not be loaded or started again; nothing is reported
 */

/* (modules) Reads the numbers of a file. QV_DONE, and all four are written; otherwise none is.
 *
 * `format` receives 18 bytes: the plain form of the format of the decoded audio. For an extensible record wFormatTag
 * is 65534 and cbSize tells the bytes of what is left out. `lengthMs` is the length in milliseconds, `fileSize` the
 * file's size in bytes, and `property` a number whose meaning is the decoder's own, with its sign. Null receives
 * nothing. */
QV_API int32_t QV_CALL QACReadAudioProperties(QvConverter* converter, const QvChar* file, QvFormat* format,
                                              uint64_t* lengthMs, uint64_t* fileSize, int64_t* property);

/* (modules) Reads a row of what a file's decoder tells of it, for display: what it is called and what it is, both in
 * words of the decoder's. INDEX 0 IS WHAT READS the file; a higher index only looks into what index 0 left on this
 * handle, though it wants the file to exist like index 0. A host asks for 0, 1, 2 and so on while it gets QV_DONE.
 *
 * QV_DONE when there is a row; also for index 0 of a file of which the decoder tells nothing at all but says so, and
 * then both texts are empty. QV_NOTHING when there is no such row, also for a negative index; both texts are empty
 * then. QV_FAILED leaves both buffers as they were where the file does not exist or has no decoder, and empties them
 * where the decoder refused.
 *
 * ROWS OF THE FILE BEFORE stay where index 0 brings no new ones, and are delivered with QV_DONE: that happens with a
 * decoder that tells nothing of a file, and also with one that refuses it, where only the errors say so. A host that
 * reads many files and must not mix them up uses a handle for each.
 *
 * LENGTH: as the decoder makes them: a few words and a short line, but nothing bounds them. */
QV_API int32_t QV_CALL QACReadAudioPropStrings(QvConverter* converter, const QvChar* file, int32_t index,
                                               QvChar* name, QvChar* value);

/* ---- Tags of a file ------------------------------------------------------------------------------------------
 *
 * What a decoder knows of its files' tags: rows of a name with a text, or with art, which is bytes of a picture or
 * the like. Which names there are is the decoder's matter. What was said above of calls that go to a file holds here
 * too.
 *
 * THE ROWS OF A FILE AND THE LIST OF THE NEXT CONVERSION, in the section behind this one, ARE ONE LIST: QACReadIDTag
 * at index 0 puts the file's rows in place of the host's, QACWriteIDTag the one row that it writes, and the next
 * conversion takes what stands there. A host that does not want that calls QACClearIDTagList.
 *
 * A host reads a file's tags so:
 *
 *     for (int32_t index = 0;; ++index) {
 *         uint64_t size = sizeof art;
 *         int32_t result = QACReadIDTag(converter, file, index, name, value, art, &size);
 *         if (result == QV_NOTHING || result == QV_FAILED) break;
 *         if (index == 0 && result == QV_DONE && name[0] == 0) break;
 *         use(name, value, art, size);
 *     }
 */

/* (modules) Reads a row of the tags of `file`. INDEX 0 IS WHAT READS the file and replaces the list; a higher index
 * only looks into the list, though it wants the file to exist like index 0. `artSize`: going in, the capacity of
 * `art` in bytes; coming out, how many bytes of art were delivered, 0 for none. Null for either means that no art is
 * wanted.
 *
 *     QV_NO_ART    THE ORDINARY ANSWER: `name` and `value` are delivered, and no art. The row has none, or its art is
 *                  not below the capacity: art of n bytes takes a capacity of n + 1
 *     QV_DONE      `name`, `value` and the art are delivered. At index 0 also: the file has no tags, and both texts are
 *                  empty
 *     QV_NOTHING   no such row, also for a negative index; the texts are empty. At index 0: the decoder gave no
 *                  tags, or 1,000,000 bytes or more of them, which are not read, or could not be started
 *     QV_FAILED    the file does not exist or has no decoder: the buffers and the list are as they were. Or the decoder
 *                  refused: the texts and the list are empty
 *
 * `artSize` is written in every case, `art` only with as many bytes as it says. From index 0 on the rows of before
 * are gone once a decoder was found, also when it then fails. What is damaged in the decoder's tags ends them early:
 * the rows before it are there.
 *
 * LENGTH: of a file's name or value below 500,000 units. Rows of the host's own are as long as it made them. */
QV_API int32_t QV_CALL QACReadIDTag(QvConverter* converter, const QvChar* file, int32_t index, QvChar* name,
                                    QvChar* value, uint8_t* art, uint64_t* artSize);

/* (modules) Writes one tag into `file`: whatever the file had under this name is replaced, and its other tags stay.
 * With *artSize above 0 it is the art at `art`, so many bytes, and `value` is left out; otherwise it is `value`.
 * `artSize` is read and not written, and is of another width than that of QACReadIDTag. Null for either means that
 * there is no art.
 *
 * QV_DONE when the decoder has written it, and otherwise as above. THE HOST'S LIST IS REPLACED by the one row, also
 * when the decoder then refuses it; the list is as it was when the file does not exist, has no decoder, or this could
 * not be started. */
QV_API int32_t QV_CALL QACWriteIDTag(QvConverter* converter, const QvChar* file, const QvChar* name,
                                     const QvChar* value, const uint8_t* art, const uint32_t* artSize);

/* (modules) Deletes the tags of this name from `file`, or all of its tags when `tagName` is null or empty. QV_DONE
 * when the decoder has done so, and otherwise as above; what a file without such a tag counts for is the decoder's
 * matter. The list stays as it is. */
QV_API int32_t QV_CALL QACDeleteIDTag(QvConverter* converter, const QvChar* file, const QvChar* tagName);

/* ---- Tags for the next conversion ----------------------------------------------------------------------------
 *
 * A list of names and values that conversions carry into the files they write. A conversion reads the list and leaves
 * it as it is. Rows with an empty value stay behind, and so does all art. QACReadIDTag at index 0 and QACWriteIDTag put
 * rows of their own in place of the host's.
 */

/* Appends a row, also when one of this name stands there. Always QV_DONE. */
QV_API int32_t QV_CALL QACAddIDTagToList(QvConverter* converter, const QvChar* name, const QvChar* value);

/* Removes all rows. Always QV_DONE. */
QV_API int32_t QV_CALL QACClearIDTagList(QvConverter* converter);

/* Copies the row at `index`, 0 being the first. QV_NOTHING when there is no such row or its value is empty, and both
 * buffers are as they were; an empty value is thus no sign of the list's end.
 *
 * LENGTH: as the host itself added them. */
QV_API int32_t QV_CALL QACReadIDTagList(QvConverter* converter, int32_t index, QvChar* name, QvChar* value);

/* Removes the row at `index`; the later ones move up by one. Always QV_DONE, also where there was no such row. */
QV_API int32_t QV_CALL QACRemoveFromIDTagList(QvConverter* converter, int32_t index);

/* Above 0 lets the converter carry the source's own tags over; 0, where a handle begins, and below tell it not to. The
 * list above is sent either way. For the next conversion; one that runs is not changed. Always QV_DONE. */
QV_API int32_t QV_CALL QACSetTagWriteThrough(QvConverter* converter, int32_t enabled);

/* ---- Effects for the next conversion -------------------------------------------------------------------------
 *
 * A chain of effects, applied in its order. A conversion reads the list and leaves it as it is.
 */

/* Appends an effect: its name, and settings as its module understands them. A double quote in the settings reaches
 * the converter as it is; one in the name does not, so a name must hold none. A row with an empty name is kept, but
 * no conversion uses it. Always QV_DONE. */
QV_API int32_t QV_CALL QACAddDSPToList(QvConverter* converter, const QvChar* name, const QvChar* settings);

/* Removes all rows. Always QV_DONE. */
QV_API int32_t QV_CALL QACClearDSPList(QvConverter* converter);

/* Copies the row at `index`, 0 being the first. QV_NOTHING when there is no such row, and both buffers are as they
 * were. The buffers should hold NUL-terminated text on entry.
 *
 * LENGTH: as the host itself added them. */
QV_API int32_t QV_CALL QACReadDSPList(QvConverter* converter, int32_t index, QvChar* name, QvChar* settings);

/* Removes the row at `index`; the later ones move up by one. QV_NOTHING when there is no such row. */
QV_API int32_t QV_CALL QACRemoveFromDSPList(QvConverter* converter, int32_t index);

/* ---- Conversion ----------------------------------------------------------------------------------------------
 *
 * Order: fill the lists, QACSetCPU and QACSetTagWriteThrough as wanted; QACConvertAudio; then QACGetProgress until it
 * says 100. The calls marked (service) watch the converter, and nothing else does: a host polls a few times a second,
 * and a host that stops polling for more than a minute may find its conversion given up. One conversion at a time for
 * each handle; several at once take several handles.
 */

/* Starts converting `sourceFile` to `destinationFile` with the encoder of that name and returns at once. QV_DONE when
 * the converter program runs; QV_NOTHING when it could not be started, and the errors say why and end with "Error
 * starting encoder".
 *
 * Neither file nor the encoder is looked at here: the converter reports what is wrong with them. Relative paths are
 * relative to the current folder. Neither path nor the encoder's name may hold a double quote. `settings` is the
 * encoder's own settings text as it goes into the converter's command, usually empty.
 *
 * Priority, pause and cancel are back at their start values afterwards: set them behind this call. A conversion that is
 * still running is not refused but abandoned: wait for 100 before the next one. */
QV_API int32_t QV_CALL QACConvertAudio(QvConverter* converter, const QvChar* sourceFile,
                                       const QvChar* destinationFile, const QvChar* encoderName,
                                       const QvChar* settings);

/* (service) Stores how far the conversion is. Always QV_DONE.
 *
 *     0          nothing was ever started with this handle, or the last start failed
 *     0 to 99    it runs; or it has ended and its last messages are on their way
 *     100        it has ENDED, and every message of it has reached QACGetLastError and QACGetLastInfo
 *
 * 100 does not mean that it is good. A conversion that failed, was cancelled, crashed or gave no sign of life for 60
 * seconds ends at 100 too. To tell them apart: take the errors before QACConvertAudio, and once 100 has come take them
 * again; none means success, unless the host itself has cancelled. What a failed conversion has left at the
 * destination is not removed. The value never falls within a conversion. A null `percent` receives nothing. */
QV_API int32_t QV_CALL QACGetProgress(QvConverter* converter, uint32_t* percent);

/* (service) Sets one of the priorities above for the conversion that runs. QV_NOTHING for any other value, and nothing
 * changes. The system may refuse to raise a priority again; that is not reported. */
QV_API int32_t QV_CALL QACSetPriority(QvConverter* converter, uint32_t priority);

/* (service) Holds the running conversion (any value but 0) or lets it go on (0). A pause does not count as a missing
 * sign of life. A conversion that is cancelled while it is held ends once it goes on. Always QV_DONE. */
QV_API int32_t QV_CALL QACSetPause(QvConverter* converter, uint8_t paused);

/* (service) Asks the converter to end its work. It ends by itself, some polls later, at 100. There is no way back
 * within a conversion; the next one begins without it. Always QV_DONE, also with nothing running. */
QV_API int32_t QV_CALL QACSetCancelled(QvConverter* converter);

/* The processor of the next conversion, counted from 1; -1, where a handle begins, for all of them. 0 tells the
 * converter nothing, and any other number reaches it as it is. One that runs is not changed. Always QV_DONE. */
QV_API int32_t QV_CALL QACSetCPU(QvConverter* converter, int32_t cpu);

/* ---- Settings ------------------------------------------------------------------------------------------------
 *
 * An encoder's or an effect's settings are one text that only its module understands. These calls let the user make
 * it: on a form of the library's own, in which the user also picks the module, or on a window of the host's. The text
 * then goes into QACConvertAudio or QAEOpenFile, an effect's into QACAddDSPToList: NONE OF THESE LOOKS FOR WHAT IS
 * STORED.
 *
 * What is stored: one text for each encoder and each user, in the registry below HKEY_CURRENT_USER under the key
 * QV_SETTINGS_KEY with the encoder's name behind it, as the text value QV_SETTINGS_VALUE. A host that wants it without
 * a form reads it there. (Linux has no registry: there QACShowSettings gives it.) Effects have none.
 *
 * Order: QACShowSettings and QACShowDSPSettings stand alone. QACShowSettingsOnForm, then QACRemoveSettings, which
 * takes the panel off and has its text; one panel at a time for each handle. No QACShowSettings on that handle in
 * between: the panel's text would be stored under the name which that leaves.
 *
 * A window of the host's that is no dialog hands what it doesn't deal with to DefDlgProcW and its messages to
 * IsDialogMessageW: then Tab and the mnemonics of a panel work, those of its labels too (examples/settings_host.c).
 *
 * THREAD: windows belong to the thread that makes them, so all four are called on the thread of the host's windows;
 * that thread must be able to have windows and, for a panel, take its messages. The library's forms are as sharp on
 * screens of more than 96 dots per inch as the host's manifest says that the host is, and have the look it asks for.
 *
 * Linux has no forms: the two calls that show one return QV_NOTHING at once with the texts as they were, an empty one
 * of an encoder being the stored one, which is a way to read it; a text that is not empty is stored all the same,
 * which is a way to store it. The panel calls load the encoder and hand it the number of the window; what it does with
 * that is its own matter.
 *
 * LENGTH: of a name less than 260 units. Of a text as long as the module makes it: a few dozen units for those of this
 * library, but nothing bounds them. Outputs may be the buffers of the inputs.
 */

/* Where an encoder's text is stored. In front of either literal goes L or u as the host's own text wants it. */
#define QV_SETTINGS_KEY "Software\\Brindleway\\Quavermill\\qMCCodec\\"
#define QV_SETTINGS_VALUE "qMC_CLI"

/* (modules) Shows the form of encoders, with this one picked and its panel below, and waits until the user has closed
 * it. The form has no owner: the host disables its own window meanwhile if it wants to. The text in the panel is
 * `settings`, or what is stored where that is empty. An encoder that is on no list shows its panel all the same.
 *
 *     QV_DONE       the form came up with that encoder
 *     QV_NOTHING    it did not: there is no such encoder, it could not be loaded, or there are no forms
 *
 * The outputs are always written, and tell how it ended:
 *
 *     closed with               encoderNameOut                settingsOut
 *     OK                        the encoder picked            its text; empty if it could not be loaded
 *     Cancel, the close box     empty                         empty
 *     never came up             empty                         empty
 *     no forms here             as it was                     as it was, or what is stored if it was empty
 *
 * They are stored, the text under that name, so that after a Cancel what the encoder has stays. While the form is up,
 * the text of an encoder is also stored when the user goes over to another one, whatever the form is closed with. */
QV_API int32_t QV_CALL QACShowSettings(QvConverter* converter, const QvChar* encoderName,
                                       const QvChar* settings, QvChar* encoderNameOut, QvChar* settingsOut);

/* (modules) Puts the panel of this encoder on a window of the host's, at `x`, `y` in pixels from the corner of its
 * inside, and returns. `parentForm` is the window's handle as a number, not 0. The text in the panel is `settings`, or
 * what is stored where that is empty. QV_DONE when the encoder was loaded, whatever its panel looks like; otherwise
 * QV_NOTHING, and nothing is reported. The window must stand until QACRemoveSettings has returned.
 *
 * A panel that stands is not taken away by a second call: it loses its module. Remove it first. */
QV_API int32_t QV_CALL QACShowSettingsOnForm(QvConverter* converter, const QvChar* encoderName,
                                             const QvChar* settings, uint64_t parentForm, uint32_t x,
                                             uint32_t y);

/* (modules) Takes the panel off the window and delivers its text, which is also stored under the name of the last
 * settings call. Without a panel the text is empty, and THAT IS STORED TOO, in place of what was there. Always
 * QV_DONE. */
QV_API int32_t QV_CALL QACRemoveSettings(QvConverter* converter, uint64_t parentForm, QvChar* settingsOut);

/* (modules) The form of effects, likewise: with this one picked, and `settings` in its panel, empty for what the
 * effect begins with. Results and outputs are those of QACShowSettings. Nothing is stored, and none is looked for: an
 * effect that the user picks begins anew, also the one of the call when it is picked again. */
QV_API int32_t QV_CALL QACShowDSPSettings(QvConverter* converter, const QvChar* dspName,
                                          const QvChar* settings, QvChar* dspNameOut, QvChar* settingsOut);

/* ---- Direct decoding -----------------------------------------------------------------------------------------
 *
 * A file's audio, block by block, in the host's own process, in the format the host asks for.
 *
 * Order: QADOpenFile; QADDecodeBlock and QADSetPosition as wanted; QADCloseFile. One file at a time for each handle;
 * a conversion and direct encoding of the same handle are apart from it. A host walks a stream like this:
 *
 *     QvFormatExtensible format = {0};
 *     uint64_t lengthMs = 0, positionMs = 0;
 *     if (QADOpenFile(converter, file, &format, &lengthMs) == QV_DONE) {
 *         const uint32_t wanted = 4096u * format.Format.nBlockAlign;
 *         uint8_t* buffer = malloc(wanted);
 *         uint32_t bytes = 0, finished = 0;
 *         while (!finished) {
 *             bytes = wanted;
 *             QADDecodeBlock(converter, buffer, &bytes, &finished, &positionMs);
 *             if (!finished && positionMs == 0) break;
 *             use(buffer, bytes);
 *         }
 *         free(buffer);
 *     }
 *     QADCloseFile(converter);
 *
 * The way out in the middle is needed: see the end of a stream at QADDecodeBlock.
 */

/* (modules) Opens `file` with the decoder for its extension. `format` is 40 bytes, in and out. Going in, nChannels,
 * wBitsPerSample and nSamplesPerSec ask for what shall be delivered, each 0 for what the file has (so is a rate of
 * 2^31 and above); nothing else of it is read. Coming out, it is the format of the blocks to come, with zeros behind a
 * record that is shorter. Null asks for nothing and receives nothing. `lengthMs` receives the file's length in
 * milliseconds, as the module gives it; it may be null.
 *
 *     QV_DONE      open, at its start; `format` and `lengthMs` are written
 *     QV_FAILED    there is no such file, no decoder for it, or its decoder refuses it; the errors say which
 *     QV_NOTHING   the decoder could not be loaded once more for this file, or made no instance; nothing is reported
 *
 * `format` and `lengthMs` are written with QV_DONE alone. What was open before is closed, unless there is no such file
 * or no decoder for it, which leave it open. After any other failure QADCloseFile should be the next call.
 *
 * A FORMAT THAT CAN'T BE REACHED IS NOT REFUSED HERE: `format` comes back as it was asked for, and then no block gives
 * any audio. What can be reached from integer and float PCM:
 *
 *     nChannels         1 to 8 from 1 to 8; any other number only where the file has as many
 *     wBitsPerSample    8, 16, 24 and 32; from float also 64. Float stays float with 32 and 64 bits, and becomes integer
 *                       with 8, 16 and 24, which the type in `format` then says; integer stays integer
 *     nSamplesPerSec    any, if the lower of the two rates, divided by what divides both, is 1 or a multiple of 2 or
 *                       of 3: so are those of all usual pairs. Not so far from the file's rate, or in so odd a ratio
 *                       to it, that its tables would take more than 512 MiB. Where both rates, divided by what divides
 *                       both, stay large, as of 95999 to 48000 Hz, the tables are megabytes, and the QADDecodeBlock
 *                       that makes them, the first with audio, takes some hundredths of a second longer; with the
 *                       largest tables a second or two (see docs/resampling.md)
 *
 * Files of any other type are delivered as they are, and can't be changed.
 *
 * A HANDLE CHANGES THE RATE OF ONE STREAM WELL. What is made for the first rates that a handle meets is kept, with the
 * audio that is still on its way through it, by QADSetPosition as well as by the next QADOpenFile. A second file whose
 * rate is to be changed wants a handle of its own: on the old one it would begin with a rest of the first and be
 * counted along with it, and other rates would come out at the wrong speed or not at all.
 *
 * Information: "Finished opening file '...'", also when the decoder has refused the file. */
QV_API int32_t QV_CALL QADOpenFile(QvConverter* converter, const QvChar* file, QvFormatExtensible* format,
                                   uint64_t* lengthMs);

/* (modules) Delivers the next audio. `bytes`: going in, how many bytes are wanted, of which only whole blocks of
 * nBlockAlign bytes are given; coming out, how many were. `buffer` has room for what is wanted, and may be null: the
 * audio is then dropped, and all else is as with a buffer. `positionMs` receives the time at the end of what was
 * delivered. Always QV_DONE.
 *
 * The call runs the module until the request can be filled or the module has reported the end. A module that gives
 * neither audio nor an end holds the call for ever.
 *
 * THE END OF A STREAM
 *
 *     what is left                  result
 *     as much as wanted, or more    delivered; `finished` is 0
 *     less than wanted              delivered; `bytes` says how much; `finished` is not 0
 *     nothing                       `bytes` AS IT WAS, `finished` and `positionMs` 0, `buffer` untouched
 *
 * So a stream whose tail fills the last request exactly ends without `finished`: the next call finds nothing left, and
 * says so only by a `positionMs` of 0 and by a buffer that it leaves alone. A call that delivered a millisecond or more
 * has another `positionMs`. The same comes of every call behind the end, and of one with no file open.
 *
 * What is wanted should be a multiple of nBlockAlign. Less than one block gives 0 in `bytes`, though the module has
 * run. In a format whose nBlockAlign is not that of its channels and depth, the last bytes of `buffer` can stay as they
 * were. Null for `bytes` wants nothing; null for the others receives nothing.
 *
 * A block that can't be brought into the format is dropped, and nothing tells of it. */
QV_API int32_t QV_CALL QADDecodeBlock(QvConverter* converter, uint8_t* buffer, uint32_t* bytes,
                                      uint32_t* finished, uint64_t* positionMs);

/* (modules) Lets the next block begin at this time in milliseconds. Audio that waited to be delivered is dropped.
 * QV_NOTHING when no file is open. A place outside the file is no failure: decoders begin at its nearest end.
 *
 * A stream that has ended, that is one whose module has reported the end to any QADDecodeBlock, does not begin again:
 * the result is QV_DONE, but no more audio comes until the file is opened again. Where the rate is changed, the place
 * is off by the ratio of the rates, and a little audio from before the seek comes out in front of it. */
QV_API int32_t QV_CALL QADSetPosition(QvConverter* converter, int64_t positionMs);

/* (modules) Closes the file; what waited to be delivered is dropped. The module stays loaded until another file is
 * opened or the handle is destroyed. Always QV_DONE, also with nothing open. A host may destroy the handle without
 * this call. */
QV_API int32_t QV_CALL QADCloseFile(QvConverter* converter);

/* ---- Direct encoding -----------------------------------------------------------------------------------------
 *
 * Blocks of the host's own audio through an encoder, in the host's own process, into a file that the encoder writes.
 * Nothing is converted: the blocks are in the format that was declared.
 *
 * Order: QAEOpenFile; QAEEncodeBlock any number of times, the last one with `finished`; QAECloseFile. One file at a
 * time for each handle.
 */

/* (modules) Begins to write `file` with the encoder of this name. `settings` is the encoder's own settings text, empty
 * for its defaults. `format` declares the blocks to come: 18 bytes are read and as many more as cbSize says, 22 at
 * most, so a plain record may stand there as well as an extensible one. Block alignment and byte rate of PCM are
 * computed anew. Null is a record of zeros.
 *
 * `file` AND `settings` MUST STAND UNTIL QAECloseFile HAS RETURNED: they are not copied. Null for either is the empty
 * text here, too.
 *
 * QV_DONE when the encoder has begun. QV_NOTHING when it has refused, and the errors hold what it said of that, if
 * anything; or when there is no such encoder or it can't be loaded, and the errors say "Error loading encoder.". An
 * encoding that was open is ended without being completed, whatever the result. */
QV_API int32_t QV_CALL QAEOpenFile(QvConverter* converter, const QvChar* file, const QvChar* encoderName,
                                   const QvChar* settings, const QvFormatExtensible* format);

/* (modules) Hands the encoder a block of *bytes bytes at `buffer`, whole frames, and the value behind `finished`, which
 * is above 0 for the last block; that one may be empty. Both numbers are read and not written; null is 0 for either,
 * and a null `buffer` is an empty block. Always QV_DONE, also with nothing open: what went wrong shows at QAECloseFile.
 * No last block is added for a host that gives none. */
QV_API int32_t QV_CALL QAEEncodeBlock(QvConverter* converter, const uint8_t* buffer, const uint32_t* bytes,
                                      const uint32_t* finished);

/* (modules) Completes the file. QV_DONE when it is good. QV_NOTHING when it is not, and the errors hold what the
 * encoder said of that, if anything; or when nothing was open. The encoder stays until another file is opened or the
 * handle is destroyed: a second call reaches it again, and what it then answers is its own matter. */
QV_API int32_t QV_CALL QAECloseFile(QvConverter* converter);

#ifdef __cplusplus
}
#endif

#endif
