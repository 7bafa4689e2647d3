/* Quavermill for hosts: converting whole audio files, the tag and effect lists that go with a conversion, and what the
 * modules beside the library offer.
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
 *     QACDestroy                                         any, with no other call on the handle running or to come
 *     every other call on one handle                     any, one at a time; not always the same one
 *     calls on two handles                               any, at the same time
 *
 * No call may be made from within the library's load or unload notification. No call waits for the converter. Calls
 * marked (modules) below load modules and wait for what these do, in the thread of the call; no other call waits for a
 * file or a module. Any call may wait for a timer step that is just running, or, when a great deal of text is reported
 * at once, for the step that makes room for it.
 *
 *
 * 3. Text
 *
 * Text is NUL-terminated UTF-16. A text that goes in stays the host's and is not kept past the call; null is taken as
 * the empty text. A text that comes out is copied whole, with its NUL, into the host's buffer. NO SIZE IS PASSED AND
 * NOTHING IS CUT: a buffer that is too small is written past its end. Each call says how long its texts can become.
 * A null buffer receives nothing.
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

/* ---- Tags for the next conversion ----------------------------------------------------------------------------
 *
 * A list of names and values that conversions carry into the files they write. A conversion reads the list and leaves
 * it as it is. Rows with an empty value stay behind.
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

#ifdef __cplusplus
}
#endif

#endif
