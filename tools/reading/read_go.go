// Reads mails with Go's standard library: a line of JSON for each.
package main

import (
	"encoding/base64"
	"encoding/json"
	"io"
	"mime"
	"mime/multipart"
	"mime/quotedprintable"
	"net/mail"
	"os"
	"time"
)

// What fails is what it reads.
func attempt(value any, err error) any {
	if err != nil {
		return "fails: " + err.Error()
	}
	return value
}

func addresses(header mail.Header, field string) (any, error) {
	list, err := header.AddressList(field)
	found := [][]string{}
	for _, address := range list {
		found = append(found, []string{address.Name, address.Address})
	}
	return found, err
}

func seconds(date time.Time, err error) (any, error) {
	return date.Unix(), err
}

func content(encoding string, body io.Reader) (any, error) {
	switch encoding {
	case "base64":
		body = base64.NewDecoder(base64.StdEncoding, body)
	case "quoted-printable":
		body = quotedprintable.NewReader(body)
	}
	bytes, err := io.ReadAll(body)
	return bytes, err // in JSON as base64
}

func main() {
	out := json.NewEncoder(os.Stdout)
	for _, path := range os.Args[1:] {
		file, err := os.Open(path)
		if err != nil {
			panic(err)
		}
		message, err := mail.ReadMessage(file)
		if err != nil {
			out.Encode(map[string]any{"mail": path, "subject": "fails: " + err.Error()})
			continue
		}
		header := message.Header
		found := map[string]any{
			"mail":       path,
			"subject":    attempt(new(mime.WordDecoder).DecodeHeader(header.Get("Subject"))),
			"to":         attempt(addresses(header, "To")),
			"cc":         attempt(addresses(header, "Cc")),
			"date":       attempt(seconds(header.Date())),
			"references": header.Get("References"),
		}
		_, parameters, _ := mime.ParseMediaType(header.Get("Content-Type"))
		if boundary, ok := parameters["boundary"]; ok {
			parts := multipart.NewReader(message.Body, boundary)
			if text, err := parts.NextRawPart(); err == nil {
				found["bytes"] = attempt(content(text.Header.Get("Content-Transfer-Encoding"), text))
			}
			if part, err := parts.NextRawPart(); err == nil {
				disposition := part.Header.Get("Content-Disposition")
				_, parameters, err := mime.ParseMediaType(disposition)
				found["filename"] = attempt(parameters["filename"], err)
				found["data"] = attempt(content(part.Header.Get("Content-Transfer-Encoding"), part))
			}
		} else {
			found["bytes"] = attempt(content(header.Get("Content-Transfer-Encoding"), message.Body))
		}
		out.Encode(found)
		file.Close()
	}
}
