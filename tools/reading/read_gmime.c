/* Reads mails with GMime: a line of JSON for each. */
#include <gmime/gmime.h>
#include <stdio.h>

static void print_string(const char* text) {
  if (text == NULL) {
    fputs("null", stdout);
    return;
  }
  putchar('"');
  for (; *text != '\0'; ++text) {
    if ((unsigned char)*text < ' ' || *text == '"' || *text == '\\')
      printf("\\u%04x", (unsigned)*text);
    else
      putchar(*text);
  }
  putchar('"');
}

static void print_member(const char* name, const char* text) {
  printf(", \"%s\": ", name);
  print_string(text);
}

static void print_addresses(const char* name, InternetAddressList* list) {
  printf(", \"%s\": [", name);
  for (int i = 0; i < internet_address_list_length(list); ++i) {
    InternetAddress* to = internet_address_list_get_address(list, i);
    fputs(i > 0 ? ", [" : "[", stdout);
    print_string(internet_address_get_name(to));
    fputs(", ", stdout);
    print_string(internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(to)));
    putchar(']');
  }
  putchar(']');
}

static void print_attachment(GMimePart* part) {
  GMimeStream* stream = g_mime_stream_mem_new();
  g_mime_data_wrapper_write_to_stream(g_mime_part_get_content(part), stream);
  GByteArray* data = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream));
  char* base64 = g_base64_encode(data->data, data->len);
  print_member("filename", g_mime_part_get_filename(part));
  print_member("data", base64);
  g_free(base64);
  g_object_unref(stream);
}

int main(int count, char** paths) {
  g_mime_init();
  for (int i = 1; i < count; ++i) {
    GMimeStream* stream = g_mime_stream_file_open(paths[i], "r", NULL);
    GMimeParser* parser = g_mime_parser_new_with_stream(stream);
    GMimeMessage* mail = g_mime_parser_construct_message(parser, NULL);
    GMimeObject* body = g_mime_message_get_mime_part(mail);
    GMimeMultipart* parts = GMIME_IS_MULTIPART(body) ? GMIME_MULTIPART(body) : NULL;
    GMimeObject* text = parts != NULL ? g_mime_multipart_get_part(parts, 0) : body;

    fputs("{\"mail\": ", stdout);
    print_string(paths[i]);
    print_member("subject", g_mime_message_get_subject(mail));
    print_addresses("to", g_mime_message_get_addresses(mail, GMIME_ADDRESS_TYPE_TO));
    print_addresses("cc", g_mime_message_get_addresses(mail, GMIME_ADDRESS_TYPE_CC));
    GDateTime* date = g_mime_message_get_date(mail);
    if (date != NULL) printf(", \"date\": %lld", (long long)g_date_time_to_unix(date));
    print_member("references", g_mime_object_get_header(GMIME_OBJECT(mail), "References"));
    if (GMIME_IS_TEXT_PART(text)) {
      char* content = g_mime_text_part_get_text(GMIME_TEXT_PART(text));
      print_member("text", content);
      g_free(content);
    }
    if (parts != NULL && g_mime_multipart_get_count(parts) > 1)
      print_attachment(GMIME_PART(g_mime_multipart_get_part(parts, 1)));
    puts("}");
    g_object_unref(mail);
    g_object_unref(parser);
    g_object_unref(stream);
  }
  g_mime_shutdown();
  return 0;
}
