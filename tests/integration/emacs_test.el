;;; emacs_test.el --- Emacs's ispell and flyspell driving orth -*- lexical-binding: t -*-
;;
;; Run by emacs_test.sh as: emacs --batch -Q -l emacs_test.el
;; ORTH_PROGRAM names the orth program; ORTH_EMACS_PRESET=1 uses the
;; configuration the README documents, 0 lets Emacs find the dictionaries
;; itself (orth -D). Checks:
;;  - flyspell marks exactly the misspelled words, through the pipe (a small
;;    buffer) and through -l (a buffer above flyspell-large-region);
;;  - ispell-word offers the expected first correction and puts it in place
;;    in a line with non-ASCII letters before the word;
;;  - ispell-buffer corrects a word after non-ASCII letters at the offset
;;    orth reports;
;;  - a word accepted for the session and a word saved to the personal list
;;    are no longer marked.
;; Exits 0 when all hold, else 1 after printing what differed.

(require 'ispell)
(require 'flyspell)
(require 'cl-lib)

(defvar orth-test-failures 0)

(defun orth-test-expect (what got want)
  (unless (equal got want)
    (setq orth-test-failures (1+ orth-test-failures))
    (message "FAIL %s:\n  got  %S\n  want %S" what got want)))

(setq ispell-program-name (getenv "ORTH_PROGRAM"))
(setq ispell-silently-savep t)
(setq ispell-personal-dictionary
      (expand-file-name "personal.tlx" (getenv "ORTH_TEST_DIR")))
(when (equal (getenv "ORTH_EMACS_PRESET") "1")
  ;; The configuration the README documents.
  (setq ispell-hunspell-dictionary-alist
        '(("en_US" "[[:alpha:]]" "[^[:alpha:]]" "['’]" t ("-d" "en_US") nil utf-8)
          ("en_GB" "[[:alpha:]]" "[^[:alpha:]]" "['’]" t ("-d" "en_GB") nil utf-8)))
  (setq ispell-dictionary "en_US"))

(defun orth-test-marked ()
  "The words flyspell marked in the current buffer, in order."
  (mapcar (lambda (o) (buffer-substring-no-properties (overlay-start o) (overlay-end o)))
          (sort (seq-filter #'flyspell-overlay-p (overlays-in (point-min) (point-max)))
                (lambda (a b) (< (overlay-start a) (overlay-start b))))))

(defconst orth-test-text
  "Thier café served recieve and teh crème brûlée.\nDECEMBER in TEXAS doesn’t wrk; the well-known MySpace soirée.\n")

;; flyspell through the pipe.
(with-temp-buffer
  (insert orth-test-text)
  (flyspell-buffer)
  (orth-test-expect "flyspell, small buffer" (orth-test-marked)
                    '("Thier" "recieve" "teh" "crème" "brûlée" "wrk")))

;; flyspell through -l.
(with-temp-buffer
  (dotimes (_ 12) (insert orth-test-text))
  (flyspell-buffer)
  (let ((marked (orth-test-marked)))
    (orth-test-expect "flyspell, large buffer: count" (length marked) 72)
    (orth-test-expect "flyspell, large buffer: words" (seq-uniq marked)
                      '("Thier" "recieve" "teh" "crème" "brûlée" "wrk"))))

;; ispell-word: the first offered correction replaces the word in place.
(let (offered)
  (with-temp-buffer
    (insert "Zürich, Gödel café: recieve it.")
    (goto-char (point-min))
    (search-forward "recieve")
    (backward-char 2)
    (cl-letf (((symbol-function 'ispell-command-loop)
               (lambda (miss _guess _word _start _end) (setq offered miss) (car miss))))
      (ispell-word))
    (orth-test-expect "ispell-word, first correction" (car offered) "receive")
    (orth-test-expect "ispell-word, buffer" (buffer-string) "Zürich, Gödel café: receive it.")))

;; ispell-buffer: corrections land at the reported offsets.
(with-temp-buffer
  (insert "Zürich, Gödel café: recieve it.\nÉmigré soirée, helo end.\n")
  (cl-letf (((symbol-function 'ispell-command-loop)
             (lambda (miss _guess _word _start _end) (car miss))))
    (ispell-buffer))
  (orth-test-expect "ispell-buffer" (buffer-string)
                    "Zürich, Gödel café: receive it.\nÉmigré soirée, hello end.\n"))

;; Session and personal words.
(with-temp-buffer
  (insert "Zorblax met Quuxly.\n")
  (goto-char (point-min))
  (cl-letf (((symbol-function 'ispell-command-loop)
             ;; As the answers a (accept) and i (insert) do.
             (lambda (_miss _guess word _start _end)
               (if (equal word "Zorblax")
                   (ispell-send-string (concat "@" word "\n"))
                 (ispell-send-string (concat "*" word "\n"))
                 (setq ispell-pdict-modified-p '(t)))
               nil)))
    (ispell-buffer))
  (flyspell-buffer)
  (orth-test-expect "accepted and saved words" (orth-test-marked) nil))
(ispell-kill-ispell t)
(orth-test-expect "personal list saved"
                  (with-temp-buffer
                    (insert-file-contents ispell-personal-dictionary)
                    (and (search-forward "Quuxly" nil t) t))
                  t)

(message "%s" (if (= orth-test-failures 0) "emacs_test: all passed"
                (format "emacs_test: %d failures" orth-test-failures)))
(kill-emacs (if (= orth-test-failures 0) 0 1))
